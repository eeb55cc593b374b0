// The shared field writers and readers of the dialogs.

#include "dialogs/DialogFields.h"

#include "dialogs/Dialog.h"
#include "view/Geometry.h"

#include <cmath>

void SetText(void* window, const MString& text) {
    if (GetWindowTextOf(window) != text) SetWindowTextOf(window, text);
}

void SetText(void* dialog, int32_t id, const MString& text) {
    if (GetControlText(dialog, id) != text) SetControlText(dialog, id, text);
}

MString FieldText(const MString& text) {
    return text.Left(FieldBufferLength - 2);
}

float FieldFloat(const MString& text) {
    float value = ParseFloat(FieldText(text));
    return std::isnan(value) ? 0.0f : value;
}

MString ReadFieldText(void* dialog, int32_t id) {
    return FieldText(GetControlText(dialog, id));
}

int32_t ReadFieldInt(void* dialog, int32_t id) {
    return ParseInteger(ReadFieldText(dialog, id));
}

float ReadFieldFloat(void* dialog, int32_t id) {
    return FieldFloat(GetControlText(dialog, id));
}

void SetFieldInt(void* dialog, int32_t id, int32_t value, bool fillEmpty) {
    MString text = ReadFieldText(dialog, id);
    if (text.IsEmpty()) {
        if (value == 0 && !fillEmpty) return;
    } else if (ParseInteger(text) == value) {
        return;
    }
    SetControlText(dialog, id, IntegerText(value));
}

void SetFieldFloat(void* dialog, int32_t id, float value) {
    MString text = ReadFieldText(dialog, id);
    if (!text.IsEmpty() && IsNearZero(FieldFloat(text) - value)) return;
    SetControlText(dialog, id, MString(value));
}

void SetComboIndex(void* dialog, int32_t id, int32_t index) {
    int32_t count = ComboItemCount(dialog, id);
    if (count <= 0) return;
    if (index < 0) index = 0;
    if (index >= count) index = count - 1;
    if (ComboSelection(dialog, id) != index) SetComboSelection(dialog, id, index);
}
