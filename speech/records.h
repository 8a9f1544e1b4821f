// The class-definition record of each host class, defined in the source of that class. Mutable: the
// frame stamps them at registration, and the host writes its tokens into their event records.

#pragma once

#include "plugin/host_interface.h"

extern ClassRecord NSSpeechRecognizerClass;
extern ClassRecord NSVoiceClass;
extern ClassRecord NSSpeechSynthesizerClass;
