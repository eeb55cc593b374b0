#pragma once
// The field writers and readers that every dialog shares. A writer leaves a
// field alone when its text already means the value, so that a refresh while
// the user types keeps the typed form and the caret. A reader takes what a
// 16-unit buffer holds: at most 15 characters.

#include "foundation/MString.h"

#include <cstdint>

enum { FieldBufferLength = 16 }; // units read from a field, terminator included

// Sets the window's own text (a dialog's title, a label) when it differs from
// the present text; an empty text sets the empty string.
void SetText(void* window, const MString& text);
// The same for the control of the id.
void SetText(void* dialog, int32_t id, const MString& text);
// Writes the value in base 10, unless the text already parses to it. An empty
// field with the value 0 stays empty unless fillEmpty is on; then it becomes
// "0".
void SetFieldInt(void* dialog, int32_t id, int32_t value, bool fillEmpty);
// Writes the value as a float is printed, unless the text already parses to
// it within IsNearZero (not-a-number counting as 0). An empty field with the
// value 0 becomes "0".
void SetFieldFloat(void* dialog, int32_t id, float value);
// Selects the index, clamped to the list, unless it is selected already. An
// empty list is left alone.
void SetComboIndex(void* dialog, int32_t id, int32_t index);

// The field's text as far as the reading buffer holds it.
MString ReadFieldText(void* dialog, int32_t id);
// The field's text as a base-10 integer; text that is no number gives 0.
int32_t ReadFieldInt(void* dialog, int32_t id);
// The field's text as a float; no number and not-a-number give 0.
float ReadFieldFloat(void* dialog, int32_t id);
// The same readings of a text, for fields whose text is edited first.
MString FieldText(const MString& text);
float FieldFloat(const MString& text);
