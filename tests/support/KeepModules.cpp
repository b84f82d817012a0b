// Qt unloads its plug-ins at exit, and with them the OpenGL driver. The leak checker then finds
// what those keep for the process's life without knowing where it comes from, and no line of
// lsan.supp matches. In builds with a sanitizer nothing is unloaded.
extern "C" __attribute__((visibility("default"))) int dlclose(void *)
{
    return 0;
}
