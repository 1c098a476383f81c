// The plainest way to learn whether a text is in a file: reads of 128 KiB and memmem(3), with the end of one
// in front of the next. Prints "true" or "false".

#define _GNU_SOURCE
#include <fcntl.h>
#include <stdio.h>
#include <string.h>
#include <unistd.h>

enum { atOnce = 131072 };

static char buffer[2 * atOnce];

int main(int count, char** arguments) {
    if (count != 3 || strlen(arguments[2]) > atOnce) {
        fprintf(stderr, "usage: PlainSearch FILE TEXT\n");
        return 2;
    }
    char const* const text = arguments[2];
    size_t const length = strlen(text);
    int const file = open(arguments[1], O_RDONLY);
    size_t kept = 0;
    ssize_t got;
    while ((got = read(file, buffer + kept, atOnce)) > 0) {
        size_t const size = kept + (size_t)got;
        if (memmem(buffer, size, text, length) != NULL) return puts("true") < 0;
        kept = size < length - 1 ? size : length - 1;
        memmove(buffer, buffer + size - kept, kept);
    }
    return got < 0 || puts("false") < 0;
}
