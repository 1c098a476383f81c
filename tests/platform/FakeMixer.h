#pragma once

// A library that stands in for ALSA's: its mixer has the controls that a test gives it.

#include <atomic>
#include <functional>
#include <map>
#include <string>
#include <vector>

struct FakeControl {
    std::string name;
    long min = 0, max = 65536;
    long left = 0, right = 0;
    bool hasVolume = true;
    bool hasSwitch = false;
    bool isLeftOn = true, isRightOn = true;
    bool isMono = false;
    bool hasRight = true;
    unsigned index = 0;
};

struct FakeMixer {
    std::vector<FakeControl> controls;
    /// The configuration, by the paths of its texts, such as "ctl.default.type".
    std::map<std::string, std::string> configuration;
    bool isConfigurationBroken = false;
    /// The step of opening the mixer that fails: 1 to 6; 0 for none.
    int failingStep = 0;
    /// The mixers that were asked for, by their names, and one that is not there.
    std::vector<std::string> opened;
    std::string missing = "none";
    /// Called when the mixer is opened.
    std::function<void()> whenOpened;
    /// What was opened or made and not closed.
    std::atomic<int> open{0};
    /// What the mixer's configuration was then, and how it was opened.
    std::map<std::string, std::string> configurationOfOpened;
    int mode = 0;
    /// The files that the configuration was read from, and its text that was not read from files.
    std::string files, text;
};
FakeMixer& Fake();
