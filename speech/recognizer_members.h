// The members of the host class "NSSpeechRecognizerZQM", for its record. `self` is borrowed; handles answered
// carry one lock that is the caller's. Where the platform has no recognizer each answers false, null or an
// empty array and does nothing else.

#pragma once

#include "plugin/host_interface.h"

#include <cstdint>

// ---- listening

// The strings of the platform's list; null only where the host makes no array.
REALarray commands(REALobject self);

// No array is no list. Elements that are null or no text are left out; for one that is gone by the time that
// it is read an error is raised, and the others are set.
void setCommands(REALobject self, REALarray commands);

// What is heard meanwhile is told from the run loop.
void startListening(REALobject self);
void stopListening(REALobject self);

// ---- properties. The parameter is always 0.

bool listensInForegroundOnly(REALobject self, std::int64_t parameter);
void setListensInForegroundOnly(REALobject self, std::int64_t parameter, signed char value);
REALstring displayedCommandsTitle(REALobject self, std::int64_t parameter);
void setDisplayedCommandsTitle(REALobject self, std::int64_t parameter, REALstring value);
bool blocksOtherRecognizers(REALobject self, std::int64_t parameter);
void setBlocksOtherRecognizers(REALobject self, std::int64_t parameter, signed char value);
