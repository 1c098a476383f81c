/* The least that an XML parser can do with a file: look at all of it, and tell nobody.

   usage: PlainXml FILE */
#include <expat.h>
#include <stdio.h>

int main(int count, char** arguments) {
    FILE* const file = count == 2 ? fopen(arguments[1], "rb") : NULL;
    if (file == NULL) return 2;
    XML_Parser const parser = XML_ParserCreate(NULL);
    static char bytes[65536];
    size_t size;
    do {
        size = fread(bytes, 1, sizeof bytes, file);
        if (XML_Parse(parser, bytes, (int)size, size == 0) != XML_STATUS_OK) return 1;
    } while (size > 0);
    XML_ParserFree(parser);
    fclose(file);
    return 0;
}
