#include <AppComponents/controls/ComboBoxSelection.h>

#include <QComboBox>

void setCmbIndex(QComboBox* cmb, int index)
{
    cmb->blockSignals(true);
    const bool isEntry = index >= 0 && index < cmb->count();
    cmb->setCurrentIndex(isEntry ? index : 0);
    cmb->blockSignals(false);
}

void setCmbValue(QComboBox* cmb, const QString& value)
{
    setCmbIndex(cmb,
                cmb->findData(value, Qt::DisplayRole, Qt::MatchExactly | Qt::MatchCaseSensitive));
}
