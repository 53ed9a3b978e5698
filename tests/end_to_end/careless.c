#include <windows.h>

/* A program as it should not be: it loads whatever it finds under the names that it is given. It proves that the
   planted libraries are found where somebody looks for them. */
int main(int argc, char** argv) {
    int loaded = 0;
    for (int i = 1; i < argc; ++i) {
        if (LoadLibraryA(argv[i]) != NULL) ++loaded;
    }
    return loaded;
}
