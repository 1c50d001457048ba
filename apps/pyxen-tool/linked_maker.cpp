// linked_maker.cpp - creates grabbers of the module that is linked in
#include "apps/pyxen-tool/linked_maker.h"

#include "grabber/mivora_kvn_pyxen_class.h"

LinkedMaker::LinkedMaker() = default;
LinkedMaker::~LinkedMaker() = default;

CMivoraGrabber* LinkedMaker::Create() {
    made = std::make_unique<CMivoraKVNPyxenClass>(nullptr);
    return made.get();
}

void LinkedMaker::Delete(CMivoraGrabber*) {
    made.reset();
}

IMivoraModuleServices* LinkedMaker::Services(CMivoraGrabber*, std::string&) {
    return &made->Services();
}
