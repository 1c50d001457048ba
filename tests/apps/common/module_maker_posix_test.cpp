// module_maker_posix_test.cpp - grabbers of a module file with an allocator that refuses
#include "apps/common/module_maker.h"

#include "tests/support/allocations/failing_allocations.h"
#include "tests/support/run_program.h"

#include <gtest/gtest.h>

#include <new>
#include <string>

namespace {

TEST(ModuleMakerOutOfMemory, IsNoModuleWithoutServices) {
    ModuleMaker maker;
    maker.SetPath(support::BuiltFile("libMivoraKVNPyxen.so"));
    CMivoraGrabber* const grabber = maker.Create();
    int missing = 0;
    EXPECT_GT(support::RefuseEachAllocation([&] {
                  try {
                      std::string reason;
                      missing += maker.Services(grabber, reason) ? 0 : 1;
                  } catch (const std::bad_alloc&) {
                  }
              }),
              0);
    EXPECT_EQ(missing, 0);
    maker.Delete(grabber);
}

} // namespace
