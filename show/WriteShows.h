#pragma once
// The Cinderlane shows that go with a saved sketch: for each ticked template
// the template show of the installation is read, its markers are replaced by
// what belongs to this sketch, a container of tree models is appended where
// asked, and the result is written beside the EPS file.

#include "foundation/MString.h"

#include <cstdint>

// Writes the show of each ticked template beside the EPS file just saved at
// epsPath. The path is not changed. Called only by SaveEps, as its last step.
// Sets MRandomSeed from the clock first, even when no template is ticked.
void WriteShows(const MString& epsPath);

// The template file of index 0 to 8 below ProgramFolder(), by SaveSolid for
// index 0; empty for any other index.
MString TemplatePath(int32_t index);
// epsPath with the extension "cnd" and its first ".cnd" replaced by the
// template's suffix: "a.eps" gives "a_Tunnel.cnd". Empty for an unknown index.
MString ShowPath(int32_t index, const MString& epsPath);
// epsPath with the extension "eps" and its first ".eps" replaced by word,
// such as "_Structure.eps".
MString TrackFilePath(const MString& epsPath, const char16_t* word);

// Replaces every occurrence of marker in text, the first one each time, until
// none is left. Nothing happens when text or marker is empty, when marker and
// replacement are equal or when the replacement holds the marker.
void ReplaceMarker(MString& text, const MString& marker, const MString& replacement);

// While set, WriteShows seeds the random generator with this value instead of
// the clock, so that tests can compare whole shows and track files.
extern const uint32_t* TheShowSeedOverride;
