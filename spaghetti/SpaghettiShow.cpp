#include "spaghetti/SpaghettiShow.h"

#include "spaghetti/WSpaghetti.h"

bool WriteProjectShow(const WSpaghetti&, const MString&, const MString&) {
    return false;
}
