// The properties of the host class "NSSpeechRecognizerZQM".

#include "plugin/guard.h"
#include "plugin/platform_strings.h"
#include "speech/recognizer_data.h"
#include "speech/recognizer_members.h"

bool listensInForegroundOnly(REALobject self, std::int64_t /*parameter*/) {
    return guarded([&]() -> bool { return [recognizerOf(self) listensInForegroundOnly]; });
}

void setListensInForegroundOnly(REALobject self, std::int64_t /*parameter*/, signed char value) {
    guarded([&] { [recognizerOf(self) setListensInForegroundOnly:static_cast<BOOL>(value)]; });
}

REALstring displayedCommandsTitle(REALobject self, std::int64_t /*parameter*/) {
    return guarded([&] { return hostString([recognizerOf(self) displayedCommandsTitle]); });
}

void setDisplayedCommandsTitle(REALobject self, std::int64_t /*parameter*/, REALstring value) {
    guarded([&] { [recognizerOf(self) setDisplayedCommandsTitle:platformString(value)]; });
}

bool blocksOtherRecognizers(REALobject self, std::int64_t /*parameter*/) {
    return guarded([&]() -> bool { return [recognizerOf(self) blocksOtherRecognizers]; });
}

void setBlocksOtherRecognizers(REALobject self, std::int64_t /*parameter*/, signed char value) {
    guarded([&] { [recognizerOf(self) setBlocksOtherRecognizers:static_cast<BOOL>(value)]; });
}
