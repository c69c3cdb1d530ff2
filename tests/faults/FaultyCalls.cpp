// Preloaded into a program: makes one of its calls fail, counted from the start.
//
// ZO_FAULT is "KIND N ERRNO", with " on" behind it when all later calls of that kind are to fail, too. What
// counts are the folder ZO_FAULT_FOLDER and what is below it, standard output and TCP sockets; each failure
// is a line of ZO_FAULT_LOG. Nothing in here allocates: the callers may be anywhere.
#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

namespace {

class TFault {
public:
    TFault() {
        const char* fault = std::getenv("ZO_FAULT");
        const char* folder = std::getenv("ZO_FAULT_FOLDER");
        char on[4] = {};
        if (!fault || !folder || std::sscanf(fault, "%15s %d %d %3s", FKind, &FTurn, &FErrno, on) < 3)
            FTurn = 0;
        FIsLasting = std::strcmp(on, "on") == 0;
        FFolder = folder ? folder : "";
    }

    /// Whether this call of AKind on AWhat is to fail; errno is set then.
    bool Strikes(const char* AKind, const char* ACall, const char* AWhat) {
        if (FTurn == 0 || std::strcmp(AKind, FKind) != 0)
            return false;
        const int turn = ++FCount;
        if (turn < FTurn || (turn > FTurn && !FIsLasting))
            return false;
        Log(ACall, AWhat);
        errno = FErrno;
        return true;
    }

    bool IsOurs(const char* APath) const {
        const std::size_t length = std::strlen(FFolder);
        return length > 0 && std::strncmp(APath, FFolder, length) == 0 &&
               (APath[length] == '/' || APath[length] == '\0');
    }

private:
    static void Log(const char* ACall, const char* AWhat) {
        const char* name = std::getenv("ZO_FAULT_LOG");
        char line[4200];
        const int length = std::snprintf(line, sizeof line, "%s %s\n", ACall, AWhat);
        const long file = syscall(SYS_open, name, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
        syscall(SYS_write, file, line, length);
        syscall(SYS_close, file);
    }

    char FKind[16] = {};
    int FTurn = 0;
    int FErrno = 0;
    bool FIsLasting = false;
    const char* FFolder = "";
    std::atomic<int> FCount = 0;
};

TFault& Fault() {
    static TFault fault;
    return fault;
}

template <class TCall>
TCall Next(const char* AName) {
    return reinterpret_cast<TCall>(dlsym(RTLD_NEXT, AName));
}

/// A call with a path, which may be relative to the working folder.
bool PathStrikes(const char* AKind, const char* ACall, const char* APath) {
    char whole[4096];
    if (APath[0] != '/') {
        if (!getcwd(whole, sizeof whole) || std::strlen(whole) + std::strlen(APath) + 2 > sizeof whole)
            return false;
        std::strcat(std::strcat(whole, "/"), APath);
        APath = whole;
    }
    return Fault().IsOurs(APath) && Fault().Strikes(AKind, ACall, APath);
}

bool IsTcp(int AFile) {
    int domain = 0;
    socklen_t size = sizeof domain;
    return getsockopt(AFile, SOL_SOCKET, SO_DOMAIN, &domain, &size) == 0 &&
           (domain == AF_INET || domain == AF_INET6);
}

/// A call with a descriptor; ASocketKind is what it is called on a socket, null where it cannot be one.
bool FileStrikes(const char* AKind, const char* ASocketKind, const char* ACall, int AFile) {
    const int before = errno;
    char link[32], path[4096];
    std::snprintf(link, sizeof link, "/proc/self/fd/%d", AFile);
    const ssize_t length = readlink(link, path, sizeof path - 1);
    bool strikes = false;
    if (length > 0) {
        path[length] = '\0';
        const bool isSocket = std::strncmp(path, "socket:", 7) == 0;
        if (isSocket && ASocketKind && IsTcp(AFile))
            strikes = Fault().Strikes(ASocketKind, ACall, "socket");
        else if (!isSocket && (Fault().IsOurs(path) || AFile == STDOUT_FILENO))
            strikes = Fault().Strikes(AKind, ACall, path);
    }
    if (!strikes)
        errno = before;
    return strikes;
}

constexpr size_t FirstBytes = 4;

bool IsAtStart(int AFile) {
    const int before = errno;
    const bool isAtStart = lseek(AFile, 0, SEEK_CUR) == 0;
    errno = before;
    return isAtStart;
}

bool StreamStrikes(const char* ACall, std::FILE* AStream) {
    if (!AStream || !FileStrikes("write", nullptr, ACall, fileno(AStream)))
        return false;
    AStream->_flags |= _IO_ERR_SEEN;
    return true;
}

mode_t ModeOf(int AFlags, va_list AMore) {
    return AFlags & (O_CREAT | __O_TMPFILE) ? va_arg(AMore, mode_t) : 0;
}

} // namespace

#define ZO_OPEN(AName)                                                                                       \
    int AName(const char* APath, int AFlags, ...) {                                                          \
        va_list more;                                                                                        \
        va_start(more, AFlags);                                                                              \
        const mode_t mode = ModeOf(AFlags, more);                                                            \
        va_end(more);                                                                                        \
        static const auto next = Next<int (*)(const char*, int, ...)>(#AName);                               \
        return PathStrikes("open", #AName, APath) ? -1 : next(APath, AFlags, mode);                          \
    }

#define ZO_OPENAT(AName)                                                                                     \
    int AName(int AFolder, const char* APath, int AFlags, ...) {                                             \
        va_list more;                                                                                        \
        va_start(more, AFlags);                                                                              \
        const mode_t mode = ModeOf(AFlags, more);                                                            \
        va_end(more);                                                                                        \
        static const auto next = Next<int (*)(int, const char*, int, ...)>(#AName);                          \
        return PathStrikes("open", #AName, APath) ? -1 : next(AFolder, APath, AFlags, mode);                 \
    }

#define ZO_FOPEN(AName)                                                                                      \
    std::FILE* AName(const char* APath, const char* AMode) {                                                 \
        static const auto next = Next<decltype(&AName)>(#AName);                                             \
        return PathStrikes("open", #AName, APath) ? nullptr : next(APath, AMode);                            \
    }

// A call AName(AFirst, ...) of AResult on the descriptor AFirst.
#define ZO_FILE_CALL(AResult, AKind, ASocketKind, AName, AParameters, AArguments, ANoexcept)                 \
    AResult AName AParameters ANoexcept {                                                                    \
        static const auto next = Next<AResult(*) AParameters>(#AName);                                       \
        return FileStrikes(AKind, ASocketKind, #AName, AFile) ? -1 : next AArguments;                        \
    }

// A call that changes the entry APath of a folder.
#define ZO_ENTRY_CALL(AKind, AName, AParameters, AArguments)                                                 \
    int AName AParameters noexcept {                                                                         \
        static const auto next = Next<int(*) AParameters>(#AName);                                           \
        return PathStrikes(AKind, #AName, APath) ? -1 : next AArguments;                                     \
    }

#define ZO_NOTHING

extern "C" {

ZO_OPEN(open)
ZO_OPEN(open64)
ZO_OPENAT(openat)
ZO_OPENAT(openat64)
ZO_FOPEN(fopen)
ZO_FOPEN(fopen64)

// The first bytes of a file come alone, as a disk may hand them out, so that a later call can fail half-way.
ZO_FILE_CALL(ssize_t, "read", "recv", read, (int AFile, void* AData, size_t ASize),
             (AFile, AData, ASize > FirstBytes && IsAtStart(AFile) ? FirstBytes : ASize), ZO_NOTHING)
ZO_FILE_CALL(ssize_t, "read", nullptr, pread, (int AFile, void* AData, size_t ASize, off_t APlace),
             (AFile, AData, ASize, APlace), ZO_NOTHING)
ZO_FILE_CALL(ssize_t, "read", nullptr, pread64, (int AFile, void* AData, size_t ASize, off64_t APlace),
             (AFile, AData, ASize, APlace), ZO_NOTHING)

ZO_FILE_CALL(ssize_t, "write", "send", write, (int AFile, const void* AData, size_t ASize),
             (AFile, AData, ASize), ZO_NOTHING)
ZO_FILE_CALL(ssize_t, "write", nullptr, pwrite, (int AFile, const void* AData, size_t ASize, off_t APlace),
             (AFile, AData, ASize, APlace), ZO_NOTHING)
ZO_FILE_CALL(ssize_t, "write", nullptr, pwrite64,
             (int AFile, const void* AData, size_t ASize, off64_t APlace), (AFile, AData, ASize, APlace),
             ZO_NOTHING)
ZO_FILE_CALL(ssize_t, "write", "send", writev, (int AFile, const iovec* AParts, int ACount),
             (AFile, AParts, ACount), ZO_NOTHING)
ZO_FILE_CALL(int, "write", nullptr, ftruncate, (int AFile, off_t ASize), (AFile, ASize), noexcept)
ZO_FILE_CALL(int, "write", nullptr, ftruncate64, (int AFile, off64_t ASize), (AFile, ASize), noexcept)

size_t fwrite(const void* AData, size_t ASize, size_t ACount, std::FILE* AStream) {
    static const auto next = Next<decltype(&fwrite)>("fwrite");
    return StreamStrikes("fwrite", AStream) ? 0 : next(AData, ASize, ACount, AStream);
}

int fputs(const char* AText, std::FILE* AStream) {
    static const auto next = Next<decltype(&fputs)>("fputs");
    return StreamStrikes("fputs", AStream) ? EOF : next(AText, AStream);
}

int fflush(std::FILE* AStream) {
    static const auto next = Next<decltype(&fflush)>("fflush");
    return StreamStrikes("fflush", AStream) ? EOF : next(AStream);
}

ZO_FILE_CALL(int, "fsync", nullptr, fsync, (int AFile), (AFile), ZO_NOTHING)
ZO_FILE_CALL(int, "fsync", nullptr, fdatasync, (int AFile), (AFile), ZO_NOTHING)

ZO_ENTRY_CALL("rename", rename, (const char* APath, const char* ATo), (APath, ATo))
ZO_ENTRY_CALL("rename", renameat2,
              (int AFolder, const char* APath, int AToFolder, const char* ATo, unsigned AFlags),
              (AFolder, APath, AToFolder, ATo, AFlags))
ZO_ENTRY_CALL("rename", link, (const char* AFrom, const char* APath), (AFrom, APath))
ZO_ENTRY_CALL("rename", linkat,
              (int AFolder, const char* AFrom, int AToFolder, const char* APath, int AFlags),
              (AFolder, AFrom, AToFolder, APath, AFlags))
ZO_ENTRY_CALL("unlink", unlink, (const char* APath), (APath))

ZO_FILE_CALL(int, "", "connect", connect, (int AFile, const sockaddr* APlace, socklen_t ASize),
             (AFile, APlace, ASize), ZO_NOTHING)
ZO_FILE_CALL(ssize_t, "", "send", send, (int AFile, const void* AData, size_t ASize, int AFlags),
             (AFile, AData, ASize, AFlags), ZO_NOTHING)
ZO_FILE_CALL(ssize_t, "", "send", sendto,
             (int AFile, const void* AData, size_t ASize, int AFlags, const sockaddr* APlace,
              socklen_t APlaceSize),
             (AFile, AData, ASize, AFlags, APlace, APlaceSize), ZO_NOTHING)
ZO_FILE_CALL(ssize_t, "", "send", sendmsg, (int AFile, const msghdr* AMessage, int AFlags),
             (AFile, AMessage, AFlags), ZO_NOTHING)
ZO_FILE_CALL(ssize_t, "", "recv", recv, (int AFile, void* AData, size_t ASize, int AFlags),
             (AFile, AData, ASize, AFlags), ZO_NOTHING)
ZO_FILE_CALL(ssize_t, "", "recv", recvfrom,
             (int AFile, void* AData, size_t ASize, int AFlags, sockaddr* APlace, socklen_t* APlaceSize),
             (AFile, AData, ASize, AFlags, APlace, APlaceSize), ZO_NOTHING)
ZO_FILE_CALL(ssize_t, "", "recv", recvmsg, (int AFile, msghdr* AMessage, int AFlags),
             (AFile, AMessage, AFlags), ZO_NOTHING)
}
