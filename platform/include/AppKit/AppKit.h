// The part of AppKit that this project uses, under Apple's names, for systems that have none of their own.

#ifndef ZQM_APPKIT_H
#define ZQM_APPKIT_H

#import <AppKit/NSSpeechRecognizer.h>
#import <AppKit/NSSpeechSynthesizer.h>
#import <Foundation/Foundation.h>

#endif
