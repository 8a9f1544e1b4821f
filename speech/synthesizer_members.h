// The members of the host class "NSSpeechSynthesizerZQM", for its record. `self` is borrowed; handles
// answered carry one lock that is the caller's. On an object that isn't constructed each answers zero or null
// and does nothing else.

#pragma once

#include "plugin/host_interface.h"

#include <cstdint>

// ---- speaking

// Whether the speech began; its events come from the run loop.
bool startSpeakingString(REALobject self, REALstring text);
bool startSpeakingStringURL(REALobject self, REALstring text, REALstring url);
bool startSpeakingStringFile(REALobject self, REALstring text, REALobject file);

// The boundary is one of the class's constants, and goes to the platform as it is.
void pauseSpeakingAtBoundary(REALobject self, std::int64_t boundary);
void stopSpeakingAtBoundary(REALobject self, std::int64_t boundary);
void continueSpeaking(REALobject self);
void stopSpeaking(REALobject self);

REALstring phonemesFromText(REALobject self, REALstring text);
void addSpeechDictionary(REALobject self, REALobject speechDictionary);

// ---- properties. The parameter is always 0.

double volume(REALobject self, std::int64_t parameter);
void setVolume(REALobject self, std::int64_t parameter, double value);
double rate(REALobject self, std::int64_t parameter);
void setRate(REALobject self, std::int64_t parameter, double value);
bool isSpeaking(REALobject self, std::int64_t parameter);
bool usesFeedbackWindow(REALobject self, std::int64_t parameter);
void setUsesFeedbackWindow(REALobject self, std::int64_t parameter, bool value);
REALstring voice(REALobject self, std::int64_t parameter);
void setVoice2(REALobject self, std::int64_t parameter, REALstring value);
bool setVoice(REALobject self, REALstring value);

// ---- the platform's speech properties, by name. What `error` holds before is unlocked; afterwards it is the
// error's host object with one lock that is the host's, or null.

REALobject objectForProperty(REALobject self, REALstring propertyName, REALobject* error);
bool setObjectForProperty(REALobject self, REALobject value, REALstring propertyName, REALobject* error);

// ---- shared: voices

bool isAnyApplicationSpeaking();
REALstring availableVoice(std::int64_t index);
std::int64_t availableVoicesCount();
REALobject attributesForVoice(REALstring voice);
REALstring defaultVoice();
REALarray availableVoices();
