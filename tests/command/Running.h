#pragma once

// Runs programs as a shell would and keeps what came of it.

#include <sys/resource.h>
#include <sys/types.h>

#include <string>
#include <vector>

struct Ran {
    int status = -1;  ///< exit status; 128 + the signal's number when a signal ended it
    std::string out, err;
    long peak = 0;  ///< KiB of memory at most, beginning with what the test itself has
};

/// A file without a name, for a program to read or to write to.
class Capture {
  public:
    explicit Capture(std::string const& text = {});
    ~Capture();
    Capture(Capture const&) = delete;
    Capture& operator=(Capture const&) = delete;
    std::string Text() const;
    int descriptor;
};

/// A program that runs. Signals have their usual meaning for it, whatever they have for the test.
class Started {
  public:
    /// With `out` as its standard output, or a file of this object's own.
    explicit Started(std::vector<std::string> const& arguments, std::string const& input = {}, int out = -1);
    /// Waits until it has written something to the file of its standard output.
    void AwaitOutput() const;
    void Send(int signal) const;
    bool HasEnded();
    /// Waits for its end.
    Ran Wait();

  private:
    Capture in, out, err;
    pid_t child;
    int status = 0;
    rusage usage{};
    bool ended = false;
};

/// Runs the program with the arguments and the text as its standard input.
Ran RunProgram(std::vector<std::string> const& arguments, std::string const& input = {});
/// Runs the built command.
Ran RunZelq(std::vector<std::string> arguments, std::string const& input = {});
/// The path of the built command.
std::string Zelq();
/// The folder that holds bin/ and lib/ of this build.
std::string BuildFolder();
/// The path of one of the libraries made for tests.
std::string TestLibrary(std::string const& name);
