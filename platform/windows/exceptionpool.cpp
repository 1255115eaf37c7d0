// The reserve from which exceptions are made when there is no memory: the C++ runtime that is linked into a DLL takes
// it when the DLL is loaded, and leaves it behind when it is unloaded. Linked into each of the driver family's DLLs.
namespace __gnu_cxx {
void __freeres();  // of libstdc++, which declares it in no header
}

namespace {

__attribute__((destructor)) void FreeExceptionPool() { __gnu_cxx::__freeres(); }

}  // namespace
