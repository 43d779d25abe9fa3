#include "KelBaseVersion.h"

#define KEL_WIDEN2(x) L##x
#define KEL_WIDEN(x) KEL_WIDEN2(x)

const wchar_t* KelBaseGetVersion() {
    return KEL_WIDEN(KELBASE_VERSION);
}

const wchar_t* const* KelBaseGetFamilies() {
    static const wchar_t* const families[] = {
        L"frame: module start-up, resource strings, conversions, blob buffers, string maps, "
        L"string helpers (miscstr, CStringToMString), TestingUtility log capture",
        L"file names: MFileName path parts, comparisons, file operations, temporary and safe "
        L"names; MFileUtility file-name repair",
        L"directories: MDirectory executable, working, project, temporary and shell folders, "
        L"access and emptiness checks, folder copies; AssurePath, IsAbsolutePath, mkdirchain",
        L"directory with a name map: MDirectoryWithMap map files of long and short names",
        L"folder locks and temporary folders: MFolderLocker lock files, MTempCleaner per-process "
        L"temporary folders and the removal of dead processes' leftovers",
        L"tagged files: MTag headers, MTagList lists and trees of tags, writing with back-patched "
        L"lengths, version conversion; MFileTagged and MFileTagReplacer: tags found by name, "
        L"version and occurrence, replaced, inserted and removed",
        L"settings files: MIniFile sections and keys read once, typed values, written back "
        L"atomically in the encoding read (ANSI, UTF-8, UTF-16LE)",
        L"checksums: COXCheckSum8/16/32 additive checksums; COXCRC16 and COXCRC32 CRCs for any "
        L"polynomial over blocks and files, tables shared per polynomial",
        L"cryptography: CRijndael (AES and Rijndael, blocks and keys of 16, 24 and 32 bytes; "
        L"ECB, CBC, CFB), CSHA1, RC4 prepare_key and rc4, Encrypt/Decrypt scrambling",
        L"progress: MProgress levels, MProgressManager window messages 2024-2028 and sink, "
        L"IStatusCallback status channel, MStatusCallbackToMProgressImpl per-thread adapter, "
        L"ProgressToStatusCallback delegate bridge, ProgressLocalizer step messages, CTimeCount "
        L"and CTimeCountOutput stopwatches, MTimeout, MProgressTimer",
        L"units: MUserUnit millimetres and inches for display, IUserUnitDependent; "
        L"MInternalUnitsValue lengths, areas and volumes that follow the internal resolution",
        L"colours: MColor_COLORREF, MColorHLSRGB on the system's 0-240 scale, MGradientColoring "
        L"value-to-colour stops",
        L"clipboard: CopyStringToClipboard (narrow and wide) and GetTextFromClipboard",
        L"registry: COXRegistry keys, values, hives and remote roots; MRegKey and "
        L"MSoftKeyCU/LM lazily opened keys with 32/64-bit views; CRegUtils one-shot values",
        L"system: MSystemInfo OS and processor names, memory, disk and display; MSysError "
        L"system error texts; MMExceptionTranslator faults as MHardException and its kinds",
        L"version information: MVersionInfo of files, MVersionInfoDLL of loaded modules (fixed "
        L"information, translations, string tables of every language)",
        L"type names: MTypeInfo readable run-time type names, alike on every build",
        L"services: CNTServiceMgr install, configure, start, stop, query and removal through the "
        L"service control manager; CServiceStatus status reports of a service process",
        L"COM registration: CComRegistrar in-process servers (class id, ProgIDs, threading "
        L"model) per user or machine, removed exactly as written",
        L"help: CHtmlHelpWrapper the HTML help control, loaded on first use",
        nullptr,
    };
    return families;
}
