// sanitizer_options.cpp - lets an allocation that cannot be served fail instead of ending the tests
//
// Tests make the SDK report absurd counts, so that allocating for them fails for real. The
// sanitizers' own library looks these up by name.

#define SEEN_BY_SANITIZERS extern "C" __attribute__((visibility("default")))

SEEN_BY_SANITIZERS const char* __asan_default_options();
SEEN_BY_SANITIZERS const char* __tsan_default_options();

const char* __asan_default_options() {
    return "allocator_may_return_null=1";
}

const char* __tsan_default_options() {
    return "allocator_may_return_null=1";
}
