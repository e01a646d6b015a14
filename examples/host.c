/* A host in C that knows the library only by name: it loads it at run time, attaches it, asks who it is and whether it
   fits, detaches and unloads it.

       host [LIBRARY]          LIBRARY is a path; without it, the system looks for the library's usual name */
#include <stdio.h>
#include <string.h>

#include "library.h"

/* --- Loading, on either system */

#ifdef _WIN32

#include <windows.h>

typedef HMODULE Library;
static const char usual_name[] = "vq95FtmB.dll";

static Library load_library(const char* path) {
    Library library = LoadLibraryA(path);
    if (library == NULL) fprintf(stderr, "host: %s does not load: error %lu\n", path, GetLastError());
    return library;
}

/* The names in the export table are those of library.h, without any decoration. Copies the address, because C knows no
   conversion between pointers to objects and to functions. */
static int find_function(Library library, const char* name, void* function) {
    const FARPROC found = GetProcAddress(library, name);
    if (found != NULL) memcpy(function, &found, sizeof found);
    return found != NULL;
}

static int unload_library(Library library) { return FreeLibrary(library) != 0; }

#else

#include <dlfcn.h>

typedef void* Library;
static const char usual_name[] = "libvq95FtmB.so.9";

static Library load_library(const char* path) {
    Library library = dlopen(path, RTLD_NOW | RTLD_LOCAL);
    if (library == NULL) fprintf(stderr, "host: %s does not load: %s\n", path, dlerror());
    return library;
}

/* The names in the symbol table are those of library.h. Copies the address, because C knows no conversion between
   pointers to objects and to functions. */
static int find_function(Library library, const char* name, void* function) {
    void* const found = dlsym(library, name);
    if (found != NULL) memcpy(function, &found, sizeof found);
    return found != NULL;
}

static int unload_library(Library library) { return dlclose(library) == 0; }

#endif

/* --- The entry points */

typedef struct {
    VqTypemgrContextFunc context;
    VqDescribeDllFunc describe;
    VqTypeMgrInfoFunc info;
    VqTypeMgrOptionsFunc options;
    VqCheckDllFunc check;
} EntryPoints;

static int find_entry(Library library, const char* name, void* function) {
    const int found = find_function(library, name, function);
    if (!found) fprintf(stderr, "host: the library has no %s\n", name);
    return found;
}

static int find_entries(Library library, EntryPoints* entries) {
    return find_entry(library, "___VqTypemgrContext", &entries->context) &&
           find_entry(library, "_VqDescribeDll", &entries->describe) &&
           find_entry(library, "_GetVqTypeMgrInfo", &entries->info) &&
           find_entry(library, "___VqTypeMgrOptions", &entries->options) &&
           find_entry(library, "_VqCheckDll", &entries->check);
}

/* --- Asking */

static void print_identity(const EntryPoints* entries) {
    unsigned long major, minor, release, build, patch, number;
    const char *module, *date, *text, *compiler, *extra;
    const char* const product =
        entries->describe(&major, &minor, &release, &build, &patch, &module, &date, &text, &number, &compiler, &extra);
    printf("product:  %s\n", product);
    printf("version:  %lu.%lu.%lu.%lu.%lu\n", major, minor, release, build, patch);
    printf("module:   %s\n", module);
    printf("built:    %s, number %lu\n", date, number);
    printf("compiler: %s\n", compiler);
}

static void print_description(const EntryPoints* entries) {
    const char* description;
    entries->info(NULL, NULL, &description, NULL, NULL);
    printf("in short: %s\n", description);
}

static const char* verdict_text(int verdict) {
    static const char* const texts[] = {
        "the libraries go together",
        "the base library has another major version",
        "the base library has another minor version",
        "the base library is of an older release",
        "the base library is of an older build",
        "the base library has an older patch",
    };
    const int known = verdict >= 0 && (size_t)verdict < sizeof texts / sizeof *texts;
    return known ? texts[verdict] : "the base library gives a verdict that this host does not know";
}

/* Returns whether the library can be used. */
static int use_library(const EntryPoints* entries) {
    entries->context(1);
    print_identity(entries);
    print_description(entries);
    printf("options:  %lu\n", (unsigned long)*entries->options());
    const int verdict = entries->check(0);
    printf("verdict:  %s\n", verdict_text(verdict));
    entries->context(0);
    if (verdict != 0) fprintf(stderr, "host: %s\n", verdict_text(verdict));
    return verdict == 0;
}

int main(int argc, char** argv) {
    const char* const path = argc > 1 ? argv[1] : usual_name;
    const Library library = load_library(path);
    if (library == NULL) return 1;
    EntryPoints entries;
    int is_fine = find_entries(library, &entries) && use_library(&entries);
    if (!unload_library(library)) {
        fprintf(stderr, "host: %s does not unload\n", path);
        is_fine = 0;
    }
    if (is_fine) printf("unloaded\n");
    return is_fine ? 0 : 1;
}
