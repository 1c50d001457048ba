// host.cpp - loads the module whose path is given and prints its name
#include <mivora/grabber.h>
#include <mivora/module_loader.h>

#include <cstdio>

int main(int argc, char** argv) {
    CModuleLoader loader;
    if (argc != 2 || !loader.Load(argv[1])) {
        std::fprintf(stderr, "%s\n", loader.GetErrorText());
        return 1;
    }
    CMivoraGrabber* const grabber = loader.CreateGrabber();
    if (!grabber) {
        std::fprintf(stderr, "%s\n", loader.GetErrorText());
        return 1;
    }
    std::printf("%s\n", grabber->GetDriverName());
    loader.DeleteGrabber(grabber);
    return 0;
}
