#pragma once

// A machine of a test's making, as its kernel would show it in /sys and /dev: to this process and to those
// that it starts.

#include <glib-object.h>
#include <gtest/gtest.h>
#include <umockdev.h>

#include <functional>
#include <memory>
#include <string>

struct Unref {
    void operator()(void* object) const { g_object_unref(object); }
};
template <class Object>
using Reference = std::unique_ptr<Object, Unref>;

class EmulatedDevices {
  public:
    /// Adds devices by their description: a paragraph for each. A line P: has the path below /sys, N: the
    /// file in /dev, E: the subsystem, A: a fact, L: a link.
    void Add(std::string const& devices) const;

    /// What an ioctl on a device's file does: its number, the program's data, and gets the number of the
    /// error, or 0. Called on another thread.
    using Function = std::function<int(unsigned long request, UMockdevIoctlData& argument)>;
    void Answer(std::string const& file, Function const& answer);

  private:
    static gboolean Handle(UMockdevIoctlBase*, UMockdevIoctlClient* client, void* self);

    Reference<UMockdevTestbed> const testbed{umockdev_testbed_new()};
    Reference<UMockdevIoctlBase> handler;
    Function function;
};

/// The memory of the program that a pointer `offset` bytes behind the data's beginning leads to; changes are
/// given back.
Reference<UMockdevIoctlData> Pointed(UMockdevIoctlData& data, std::size_t offset, std::size_t size);
