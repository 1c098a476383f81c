// A program without any tests: the headers are compiled for it.

int main() {}
