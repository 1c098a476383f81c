/* A plain program on libplist: reads a property list, prints the string of one key of its root, and lets it
   go.

   usage: ListLookup FILE KEY */
#include <plist/plist.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

static char* read_file(char const* path, uint32_t* size) {
    FILE* const file = fopen(path, "rb");
    if (file == NULL || fseek(file, 0, SEEK_END) != 0) return NULL;
    long const length = ftell(file);
    rewind(file);
    char* const bytes = malloc((size_t)length + 1);
    *size = (uint32_t)length;
    if (bytes != NULL && fread(bytes, 1, *size, file) != *size) *size = 0;
    fclose(file);
    return bytes;
}

int main(int count, char** arguments) {
    uint32_t size = 0;
    char* const bytes = count == 3 ? read_file(arguments[1], &size) : NULL;
    if (bytes == NULL) return 2;
    plist_t list = NULL;
    if (size > 6 && memcmp(bytes, "bplist", 6) == 0) {
        plist_from_bin(bytes, size, &list);
    } else {
        plist_from_xml(bytes, size, &list);
    }
    free(bytes);
    char* value = NULL;
    if (list != NULL) plist_get_string_val(plist_dict_get_item(list, arguments[2]), &value);
    if (value == NULL) return 1;
    puts(value);
    free(value);
    plist_free(list);
    return 0;
}
