#include "pxnc/genicam/text_pool.h"

namespace genicam {

const char* TextPool::Intern(std::string_view text) {
    const platform::MutexLock lock(mutex);
    return texts.emplace(text).first->c_str();
}

} // namespace genicam
