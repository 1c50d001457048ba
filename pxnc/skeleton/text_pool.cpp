// text_pool.cpp - one pointer per distinct text
#include "pxnc/skeleton/text_pool.h"

namespace skeleton {

const char* TextPool::Intern(std::string_view text) {
    platform::MutexLock lock(mutex);
    return texts.emplace(text).first->c_str();
}

} // namespace skeleton
