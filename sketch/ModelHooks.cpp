#include "sketch/ModelHooks.h"

WModelHooks TheModelHooks;

void AskShowMenuState() {
    if (TheModelHooks.ShowMenuState) TheModelHooks.ShowMenuState();
}

void AskShowTitle() {
    if (TheModelHooks.ShowTitle) TheModelHooks.ShowTitle();
}

void AskShowSelection() {
    if (TheModelHooks.ShowSelection) TheModelHooks.ShowSelection();
}

void AskShowMode() {
    if (TheModelHooks.ShowMode) TheModelHooks.ShowMode();
}
