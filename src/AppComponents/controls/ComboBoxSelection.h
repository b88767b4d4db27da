#pragma once

#include <AppComponents/AppComponentsExport.h>

class QComboBox;
class QString;

/// Selects the entry \p index of \p cmb without emitting the combo box's signals; an index outside
/// the list selects the first entry. Afterwards the signals are unblocked, whatever they were.
APPCOMPONENTS_EXPORT void setCmbIndex(QComboBox* cmb, int index);

/// Selects the first entry of \p cmb whose text equals \p value (case-sensitive) as setCmbIndex()
/// does; an unknown text selects the first entry.
APPCOMPONENTS_EXPORT void setCmbValue(QComboBox* cmb, const QString& value);
