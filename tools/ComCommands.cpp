// com register|unregister: an in-process COM server's class id and ProgID in the registry,
// with the library's CComRegistrar.
#include "Keltool.h"

namespace Keltool {
namespace {

const std::pair<const wchar_t*, CComRegistrar::ThreadingModel> ThreadingModels[] = {
    {L"apartment", CComRegistrar::threadingApartment},
    {L"free", CComRegistrar::threadingFree},
    {L"both", CComRegistrar::threadingBoth},
    {L"neutral", CComRegistrar::threadingNeutral},
};

int Com(const Arguments& arguments) {
    const Parsed parsed = SplitOptions(arguments);
    CComRegistrar::Scope scope = CComRegistrar::scopeUser;
    CComRegistrar::Server server;
    for (const std::wstring& option : parsed.options) {
        if (option == L"--machine")
            scope = CComRegistrar::scopeMachine;
        else if (option.compare(0, 14, L"--description=") == 0)
            server.description = option.substr(14).c_str();
        else if (option.compare(0, 12, L"--threading=") == 0) {
            const auto chosen = Choose(ThreadingModels, option.substr(12));
            if (!chosen)
                return NotAChoice(L"com", L"threading models", ThreadingModels, option.substr(12));
            server.threading = *chosen;
        } else
            return UnknownOption(L"com", option);
    }
    const Arguments& words = parsed.operands;
    if (words.size() != 4 || (words[0] != L"register" && words[0] != L"unregister"))
        return UsageError(L"com", L"use com register|unregister DLL CLSID PROGID");
    server.dll = words[1].c_str();
    server.clsid = words[2].c_str();
    server.progId = words[3].c_str();
    if (!CComRegistrar::IsClassId(server.clsid))
        return UsageError(L"com", L"not a class id in braces: " + words[2]);
    if (!CComRegistrar::IsProgId(server.progId))
        return UsageError(L"com",
                          L"not a ProgID (letters, digits and dots, at most 39): " + words[3]);
    CComRegistrar registrar(scope);
    if (words[0] == L"register") {
        if (!registrar.Register(server))
            return FailWithCode(L"cannot register \"" + words[1] + L"\" as " + words[2],
                                registrar.GetLastError());
    } else if (!registrar.Unregister(server))
        return FailWithCode(L"cannot unregister " + words[2], registrar.GetLastError());
    return Success;
}

} // namespace

KELTOOL_COMMAND(
    com, L"com",
    L"com [--machine] [--threading=MODEL] [--description=TEXT] "
    L"register|unregister DLL CLSID PROGID",
    L"Registers an in-process COM server for the current user (HKCU\\Software\\Classes)\n"
    L"or, with --machine, for every user (HKLM\\Software\\Classes): the class id, the\n"
    L"ProgID and its version-independent form (without a last \".<digits>\" part),\n"
    L"and the DLL with its threading model (apartment by default, free, both or\n"
    L"neutral). unregister removes what register wrote and nothing that others added.\n",
    Com, OwnOptions);

} // namespace Keltool
