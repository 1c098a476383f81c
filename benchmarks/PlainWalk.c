// The plainest way to learn what an evaluation learns of a tree: for each entry that getdents64(2) lists a
// statx(2) and the names of the extended attributes, by listxattrat(2) where the kernel has it, else by path.
// Prints the number of files and the sum of their sizes.

#define _GNU_SOURCE
#include <dirent.h>
#include <errno.h>
#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/xattr.h>
#include <unistd.h>

#ifndef SYS_listxattrat
#define SYS_listxattrat 465
#endif

enum { bufferBytes = 32768, namesBytes = 1024 };

static unsigned long files;
static unsigned long long bytes;
static int hasListxattrat;

static void listAttributes(int folder, char const* name) {
    char names[namesBytes];
    if (hasListxattrat) {
        syscall(SYS_listxattrat, folder, name, 0, names, sizeof names);
        return;
    }
    char path[512];
    snprintf(path, sizeof path, "/proc/self/fd/%d/%s", folder, name);
    listxattr(path, names, sizeof names);
}

static void walk(int folder) {
    char* const buffer = malloc(bufferBytes);
    long got;
    while (buffer != NULL && (got = getdents64(folder, buffer, bufferBytes)) > 0) {
        for (long at = 0; at < got;) {
            struct dirent64 const* const entry = (struct dirent64 const*)(buffer + at);
            at += entry->d_reclen;
            if (strcmp(entry->d_name, ".") == 0 || strcmp(entry->d_name, "..") == 0) continue;
            struct statx status;
            if (statx(folder, entry->d_name, AT_SYMLINK_NOFOLLOW, STATX_BASIC_STATS | STATX_BTIME, &status) !=
                0)
                continue;
            listAttributes(folder, entry->d_name);
            if (!S_ISDIR(status.stx_mode)) {
                ++files;
                bytes += status.stx_size;
                continue;
            }
            int const below = openat(folder, entry->d_name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW);
            if (below < 0) continue;
            walk(below);
            close(below);
        }
    }
    free(buffer);
}

int main(int count, char** arguments) {
    int const top = count == 2 ? open(arguments[1], O_RDONLY | O_DIRECTORY) : -1;
    if (top < 0) {
        fprintf(stderr, "usage: PlainWalk FOLDER\n");
        return 1;
    }
    hasListxattrat = syscall(SYS_listxattrat, top, ".", 0, NULL, (size_t)0) >= 0 || errno != ENOSYS;
    walk(top);
    printf("%lu %llu\n", files, bytes);
    return 0;
}
