#pragma once

#include "content/FileLines.h"
#include "frame/Adapters.h"

/// The lines of a file. A negative number goes through to the inspector of "line".
class FileLinesModule {
    using Iterated = IteratedPropertyOfObject<line_iterator, file_line, file>;
    using IteratedByText = IteratedPropertyByIndexOfObject<line_iterator, file_line, inspector_string, file>;

    TypeRecord<file_line, 1> type{"file line", "string"};
    PropertyOfObject<integer, file_line> number{"line number", "line numbers", "file line",
                                                "integer",     LineNumber,     DependsOnlyOnParameters};
    PropertyOfObject<file_line, file_line> previous{"previous line", "previous lines", "file line",
                                                    "file line", PreviousLine};
    PropertyOfObject<file_line, file_line> next{"next line", "next lines", "file line", "file line",
                                                NextLine};
    PropertyByIndexOfObject<file_line, integer, file> numbered{"line", "lines",     "integer",
                                                               "file", "file line", NumberedLine};
    Iterated all{"line", "lines", "file", "file line", &line_iterator::First, &line_iterator::Next};
    IteratedByText startingWith{"line starting with",
                                "lines starting with",
                                "string",
                                "file",
                                "file line",
                                &line_iterator::FirstStartingWith,
                                &line_iterator::NextStartingWith};
    IteratedByText containing{"line containing",
                              "lines containing",
                              "string",
                              "file",
                              "file line",
                              &line_iterator::FirstContaining,
                              &line_iterator::NextContaining};
};
