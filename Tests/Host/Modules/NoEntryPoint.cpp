// A module like any other, but no provider.
extern "C" __attribute__((visibility("default"))) int notTheEntryPoint() {
    return 0;
}
