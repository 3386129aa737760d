extern "C" int unrelated() {
    return 0;
}
