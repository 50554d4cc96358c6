// A shared object that is no module: it has no entry point.
extern "C" int plainLibraryAnswer() {
    return 42;
}
