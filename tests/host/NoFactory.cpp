// Loads fine but exports no module factory.
extern "C" int tavna_not_a_module() {
    return 0;
}
