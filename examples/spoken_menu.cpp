// A menu of drinks that is driven by voice: "next drink", "previous drink", "order it".
//
//     spoken_menu PLUGIN [FILE]     FILE: a sound file, heard instead of the microphone

#include "common.h"

#include <zqmplatform/listening.h>

#include <array>
#include <exception>
#include <functional>
#include <iostream>
#include <map>

using namespace examples;

namespace {

constexpr std::array kDrinks = {"tea", "coffee", "cocoa", "water"};

struct Menu {
    std::size_t chosen = 0;
    bool ordered = false;

    void print() const {
        for (std::size_t index = 0; index < kDrinks.size(); ++index) {
            std::cout << (index == chosen ? " >" : "  ") << kDrinks[index];
        }
        std::cout << std::endl;
    }
};

const std::map<std::string, std::function<void(Menu&)>> kCommands = {
    {"next drink", [](Menu& menu) { menu.chosen = (menu.chosen + 1) % kDrinks.size(); }},
    {"previous drink", [](Menu& menu) { menu.chosen = (menu.chosen + kDrinks.size() - 1) % kDrinks.size(); }},
    {"order it", [](Menu& menu) { menu.ordered = true; }},
};

// What the class doesn't tell: that a file is over, or that nothing can be heard.
void noteEnd(const ZQMListeningEvent* event, void* problem) {
    if (event->kind == ZQMListeningFailed) {
        *static_cast<std::string*>(problem) = event->reason;
    } else if (event->kind == ZQMListeningEnded) {
        *static_cast<std::string*>(problem) = "nothing was ordered";
    }
}

} // namespace

int main(int argc, char** argv) try {
    if (argc < 2) {
        throw Error("usage: spoken_menu PLUGIN [FILE]");
    }
    Runtime runtime;
    load(runtime, argv[1]);
    Object recognizer = runtime.create("NSSpeechRecognizerZQM");

    Array commands = runtime.array(ElementType::String);
    for (const auto& [command, action] : kCommands) {
        commands.append(command);
    }
    recognizer.call("setCommands", commands);
    Menu menu;
    recognizer.on("DidRecognizeCommand", [&](const Arguments& event) {
        kCommands.at(event[0].asText())(menu);
        if (!menu.ordered) {
            menu.print();
        }
    });

    std::string problem;
    ZQMPlatformObserveListening(noteEnd, &problem);
    if (argc > 2) {
        ZQMPlatformListenToFile(argv[2]);
    }
    menu.print();
    recognizer.call("startListening");
    while (!menu.ordered && problem.empty()) {
        runtime.runUntil([&] { return menu.ordered || !problem.empty(); }, Seconds(3600));
    }
    ZQMPlatformObserveListening(nullptr, nullptr);
    if (!menu.ordered) {
        throw Error(problem);
    }
    std::cout << "One " << kDrinks[menu.chosen] << ", please." << std::endl;
} catch (const std::exception& error) {
    std::cerr << "spoken_menu: " << error.what() << '\n';
    return 1;
}
