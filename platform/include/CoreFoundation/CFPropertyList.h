#pragma once

// Property lists: trees of strings, data, numbers, truth values, dates, arrays and dictionaries as bytes.
//
// Three formats are read, whatever the data's name. Binary lists, as "bplist00" begins them: also null, sets
// and unique identifiers, objects of types of their own. XML. And the old-style text, with what it is used
// for in .strings files: a dictionary's content without braces.
//
// What is refused, beside bytes that are none of these: XML that is not well-formed, and so control
// characters, also as references; entities that a document declares itself, and more than 100 attributes that
// it declares with a value; a list whose containers lie more than 512 deep in one another; a binary list with
// a cycle, with keys that are not strings, with objects that share bytes. Time and memory of reading grow
// with the number of bytes and with nothing else. The check-in function (Platform/Items.h) may end it.

#include <CoreFoundation/CFBase.h>
#include <CoreFoundation/CFData.h>
#include <CoreFoundation/CFString.h>

typedef CFTypeRef CFPropertyListRef;

enum {
    kCFPropertyListImmutable = 0,
    /// Not offered: objects here never change.
    kCFPropertyListMutableContainers = 1,
    kCFPropertyListMutableContainersAndLeaves = 2
};

/// The object at the root of a property list, of whatever type. Null for data that is no property list, and
/// for an option other than kCFPropertyListImmutable; `errorString` (optional) is then a new string that says
/// why, in English and with the line where there is one, and null otherwise. It is also null when there was
/// no memory for it.
PLATFORM_API CFPropertyListRef CFPropertyListCreateFromXMLData(CFAllocatorRef allocator, CFDataRef xmlData,
                                                               UInt32 mutabilityOption,
                                                               CFStringRef* errorString);
