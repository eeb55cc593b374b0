#pragma once
// What the model asks of the windows around it after a change. The model
// knows no window: the shell fills these hooks at start-up, and an empty hook
// asks nothing.

struct WModelHooks {
    void (*ShowMenuState)() = nullptr; // the menu checks the mode and enables undo and redo anew
    void (*ShowTitle)() = nullptr;     // the title shows file, modified mark, count and mode anew
    void (*ShowSelection)() = nullptr; // the Point tool window, if open, shows the selection anew
    void (*ShowMode)() = nullptr;      // the Mode palette, if open, shows the mode anew
};

extern WModelHooks TheModelHooks;

// Each call runs its hook when one is filled.
void AskShowMenuState();
void AskShowTitle();
void AskShowSelection();
void AskShowMode();
