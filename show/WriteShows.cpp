// The Cinderlane shows that go with a saved sketch.

#include "show/WriteShows.h"

// The template shows are written here: for each ticked template the template
// show is read, the track sampled and its pillar and tree files written, the
// markers replaced and the show saved beside the EPS file. Until that is in
// place a save writes the EPS file alone.
void WriteShows(const MString& epsPath) {
    (void)epsPath;
}
