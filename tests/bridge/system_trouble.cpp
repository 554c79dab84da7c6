#include "bridge/system_trouble.h"

#include <windows.h>

namespace norvane::test {

namespace {

/// The function itself, past the import that leads here.
template <class Function>
Function* Real(const char* library, const char* name) {
    return reinterpret_cast<Function*>(
        reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleA(library), name)));
}

UINT WINAPI Register_Message(LPCSTR name) {
    static auto* const real =
        Real<decltype(::RegisterWindowMessageA)>("user32", "RegisterWindowMessageA");
    return Trouble().no_message ? 0 : real(name);
}

ATOM WINAPI Add_Atom(LPCSTR name) {
    static auto* const real = Real<decltype(::GlobalAddAtomA)>("kernel32", "GlobalAddAtomA");
    return Trouble().no_atom ? ATOM{0} : real(name);
}

HANDLE WINAPI Create_Mapping(HANDLE file, LPSECURITY_ATTRIBUTES security, DWORD protection,
                             DWORD high, DWORD low, LPCSTR name) {
    static auto* const real =
        Real<decltype(::CreateFileMappingA)>("kernel32", "CreateFileMappingA");
    return Trouble().no_mapping ? nullptr : real(file, security, protection, high, low, name);
}

LPVOID WINAPI Map_View(HANDLE mapping, DWORD access, DWORD high, DWORD low, SIZE_T size) {
    static auto* const real = Real<decltype(::MapViewOfFile)>("kernel32", "MapViewOfFile");
    return Trouble().no_view ? nullptr : real(mapping, access, high, low, size);
}

}  // namespace

System_Trouble& Trouble() {
    static System_Trouble trouble;
    return trouble;
}

}  // namespace norvane::test

// The linker takes these before the import library's.
extern "C" {
decltype(&::RegisterWindowMessageA) __imp_RegisterWindowMessageA = norvane::test::Register_Message;
decltype(&::GlobalAddAtomA) __imp_GlobalAddAtomA = norvane::test::Add_Atom;
decltype(&::CreateFileMappingA) __imp_CreateFileMappingA = norvane::test::Create_Mapping;
decltype(&::MapViewOfFile) __imp_MapViewOfFile = norvane::test::Map_View;
}
