#pragma once

// The applications that are in charge of links and kinds of files.

#include <Carbon/Files.h>

#include <string>
#include <string_view>

namespace Platform {

/// What a desktop entry says of its application.
struct HandlingApplication {
    std::string id;      // such as "org.example.mailer.desktop"; empty where there is no such application
    std::string name;    // as it is not translated
    OSType creator = 0;  // 0 where the entry tells none
};

/// Gets the application that is in charge of a MIME type, such as "x-scheme-handler/mailto", as the files
/// mimeapps.list, and then defaults.list and mimeinfo.cache beside desktop entries, tell: the first one whose
/// program is there. The result is noErr, also where there is none, unless a wait for a file was given up.
OSErr GetHandler(std::string_view mimeType, HandlingApplication& application);

}  // namespace Platform
