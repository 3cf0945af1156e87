// This compiler's runtime frees the memory of a thread's variables by one key and destroys what
// lies in it by another, in the order in which the keys were made. In every program the one that
// destroys is made first, here; else a destructor at a thread's end looks at memory that is no more
// (Qt's regular expressions have one).
extern "C" int __cxa_thread_atexit(void (*end)(void*), void* object, void* library) noexcept;

namespace {

[[maybe_unused]] const int isMade = __cxa_thread_atexit([](void*) {}, nullptr, nullptr);

} // namespace
