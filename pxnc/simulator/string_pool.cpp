#include "pxnc/simulator/string_pool.h"

namespace pxsim {

const char* StringPool::Intern(std::string_view text) {
    platform::MutexLock lock(mutex);
    return texts.emplace(text).first->c_str();
}

} // namespace pxsim
