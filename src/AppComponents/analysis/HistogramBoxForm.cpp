#include "HistogramBoxForm.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QFormLayout>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QSpacerItem>

#include "HistogramProcessedWidget.h"
#include "HistogramRawWidget.h"

namespace
{

QString translated(const char* text)
{
    return QCoreApplication::translate("HistogramBox", text);
}

template <typename T>
T* named(T* object, const char* name)
{
    object->setObjectName(QLatin1String(name));
    return object;
}

QLabel* newLabel(QWidget& parent, const char* name, const char* text)
{
    auto* const label = named(new QLabel(&parent), name);
    label->setText(translated(text));
    return label;
}

QLabel* newHeader(QWidget& parent, const char* name, const char* text)
{
    auto* const header = newLabel(parent, name, text);
    header->setProperty("type", QStringLiteral("header"));
    return header;
}

QCheckBox* newCheckBox(QWidget& parent, const char* name, const char* text)
{
    auto* const checkBox = named(new QCheckBox(&parent), name);
    checkBox->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    checkBox->setText(translated(text));
    return checkBox;
}

/// Object names of a column of read-outs, label and field from "Min:" down to "AVG:".
struct ReadOutNames {
    struct Row {
        const char* label;
        const char* field;
    };
    const char* form;
    Row rows[4];
};

HistogramBoxForm::ReadOuts newReadOuts(QWidget& holder, const ReadOutNames& names)
{
    static constexpr const char* texts[] = {"Min:", "Max:", "Range:", "AVG:"};
    auto* const form = named(new QFormLayout(&holder), names.form);
    form->setContentsMargins(0, 0, -1, 0);
    QLineEdit* fields[4];
    for (int row = 0; row < 4; ++row) {
        fields[row] = named(new QLineEdit(&holder), names.rows[row].field);
        fields[row]->setProperty("type", QStringLiteral("read-only"));
        form->setWidget(row, QFormLayout::LabelRole,
                        newLabel(holder, names.rows[row].label, texts[row]));
        form->setWidget(row, QFormLayout::FieldRole, fields[row]);
    }
    return {fields[0], fields[1], fields[2], fields[3]};
}

QSpacerItem* newVerticalSpacer()
{
    return new QSpacerItem(20, 40, QSizePolicy::Minimum, QSizePolicy::Expanding);
}

void setUpPainter(QWidget& painter, const char* name, const char* styleSheet)
{
    named(&painter, name);
    painter.setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    painter.setStyleSheet(QLatin1String(styleSheet));
}

} // namespace

HistogramBoxForm::HistogramBoxForm(QWidget& box)
{
    if (box.objectName().isEmpty())
        named(&box, "HistogramBox");
    box.resize(225, 440);
    box.setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Expanding);
    box.setMinimumSize(0, 440);
    box.setStyleSheet(QStringLiteral("QLineEdit[type=\"read-only\"]{\n"
                                     "background-color:transparent;\n"
                                     "border:0;\n"
                                     "}"));
    box.setWindowTitle(translated("Form"));

    auto* const verticalLayout = named(new QVBoxLayout(&box), "verticalLayout");
    auto* const grid = named(new QGridLayout, "gridLayout");
    verticalLayout->addLayout(grid);
    grid->setSpacing(4);
    layOutRaw(*grid, box);
    layOutProcessed(*grid, box);
    layOutOptions(*grid, box);
    QMetaObject::connectSlotsByName(&box);
}

void HistogramBoxForm::layOutRaw(QGridLayout& grid, QWidget& box)
{
    grid.addWidget(newHeader(box, "label_2", "Raw"), 0, 0, 1, 3);

    auto* const holder = named(new QWidget(&box), "widget_2");
    raw = newReadOuts(*holder, {"formLayout_2",
                                {{"label_6", "txtRawMin"},
                                 {"label_7", "txtRawMax"},
                                 {"label_4", "txtRawRange"},
                                 {"label_5", "txtRawAvg"}}});
    raw.min->setMinimumSize(50, 0);
    for (QLineEdit* const field : {raw.min, raw.max, raw.range, raw.average})
        field->setReadOnly(true);
    grid.addWidget(holder, 1, 0, 2, 2);

    wgtHistogram = new HistogramRawWidget(&box);
    setUpPainter(*wgtHistogram, "wgtHistogram", "background-color:green;");
    grid.addWidget(wgtHistogram, 1, 2, 3, 1);

    grid.addItem(newVerticalSpacer(), 3, 0, 1, 2);
    grid.addItem(new QSpacerItem(20, 4, QSizePolicy::Minimum, QSizePolicy::Fixed), 4, 0, 1, 3);
}

void HistogramBoxForm::layOutProcessed(QGridLayout& grid, QWidget& box)
{
    grid.addWidget(newHeader(box, "label_1", "Processed"), 5, 0, 1, 3);

    auto* const holder = named(new QWidget(&box), "widget_1");
    processed = newReadOuts(*holder, {"formLayout",
                                      {{"label_3", "txtRawMinP"},
                                       {"label_9", "txtRawMaxP"},
                                       {"label_10", "txtRawRangeP"},
                                       {"label_11", "txtRawAvgP"}}});
    grid.addWidget(holder, 6, 0, 2, 2);

    wgtProcessedHistogram = new HistogramProcessedWidget(&box);
    setUpPainter(*wgtProcessedHistogram, "wgtProcessedHistogram", "background-color:red;");
    grid.addWidget(wgtProcessedHistogram, 6, 2, 3, 1);

    grid.addItem(newVerticalSpacer(), 8, 0, 1, 2);
    grid.addItem(newVerticalSpacer(), 9, 0, 1, 1);
}

void HistogramBoxForm::layOutOptions(QGridLayout& grid, QWidget& box)
{
    grid.addWidget(newHeader(box, "label_8", "Options"), 10, 0, 1, 3);

    auto* const row = named(new QHBoxLayout, "horizontalLayout");
    row->setSpacing(6);
    row->setContentsMargins(-1, -1, -1, 9);
    cbLogarithmic = newCheckBox(box, "cbLogarithmic", "Log");
    cbLogarithmic->setMinimumSize(25, 0);
    row->addWidget(cbLogarithmic);
    row->addItem(new QSpacerItem(20, 20, QSizePolicy::Fixed, QSizePolicy::Minimum));
    chR = newCheckBox(box, "chR", "R");
    chG = newCheckBox(box, "chG", "G");
    chB = newCheckBox(box, "chB", "B");
    for (QCheckBox* const channel : {chR, chG, chB}) {
        channel->setChecked(true);
        row->addWidget(channel);
    }
    row->addItem(new QSpacerItem(40, 20, QSizePolicy::Expanding, QSizePolicy::Minimum));
    grid.addLayout(row, 11, 0, 1, 3);
}
