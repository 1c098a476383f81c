#pragma once

// All of the Carbon interface.

#include <Carbon/Components.h>
#include <Carbon/Files.h>
#include <Carbon/Folders.h>
#include <Carbon/Gestalt.h>
#include <Carbon/InternetConfig.h>
#include <Carbon/LaunchServices.h>
#include <Carbon/MacErrors.h>
#include <Carbon/MacMemory.h>
#include <Carbon/MacTypes.h>
#include <Carbon/Processes.h>
#include <Carbon/Resources.h>
#include <Carbon/SCSI.h>
#include <Carbon/Sound.h>
