// A module like any other, but no provider.
extern "C" int notTheEntryPoint() {
    return 0;
}
