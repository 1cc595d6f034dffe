// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Process/ProgramConfinement.h"

#include <climits>
#include <cstdint>
#include <cstring>
#include <elf.h>
#include <fcntl.h>
#include <fstream>
#include <link.h>
#include <linux/landlock.h>
#include <stdexcept>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <utility>

namespace velquarin {

namespace {

// The kernel's header of the build machine may be older than the kernel that the program runs on.
constexpr std::uint64_t accessRefer = 1ULL << 13U;
constexpr std::uint64_t accessTruncate = 1ULL << 14U;
constexpr std::uint64_t accessDeviceIoctl = 1ULL << 15U;
constexpr std::uint64_t netBindTcp = 1ULL << 0U;
constexpr std::uint64_t netConnectTcp = 1ULL << 1U;
constexpr std::uint64_t scopeAbstractSocket = 1ULL << 0U;
constexpr std::uint64_t scopeSignal = 1ULL << 1U;

constexpr std::uint64_t accessWriting = LANDLOCK_ACCESS_FS_WRITE_FILE | LANDLOCK_ACCESS_FS_REMOVE_DIR |
                                        LANDLOCK_ACCESS_FS_REMOVE_FILE | LANDLOCK_ACCESS_FS_MAKE_CHAR |
                                        LANDLOCK_ACCESS_FS_MAKE_DIR | LANDLOCK_ACCESS_FS_MAKE_REG |
                                        LANDLOCK_ACCESS_FS_MAKE_SOCK | LANDLOCK_ACCESS_FS_MAKE_FIFO |
                                        LANDLOCK_ACCESS_FS_MAKE_BLOCK | LANDLOCK_ACCESS_FS_MAKE_SYM;

struct Ruleset
{
    std::uint64_t fileAccess = 0;
    std::uint64_t netAccess = 0;  // from version 4
    std::uint64_t scopes = 0;     // from version 6
};

class Descriptor
{
public:
    explicit Descriptor(long number)
        : m_number(static_cast<int>(number))
    {
    }
    ~Descriptor()
    {
        if (isValid())
            close(m_number);
    }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;
    [[nodiscard]] bool isValid() const { return m_number >= 0; }
    [[nodiscard]] int number() const { return m_number; }
    [[nodiscard]] int release() { return std::exchange(m_number, -1); }

private:
    int m_number;
};

long landlockVersion()
{
    return syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION);
}

Ruleset rulesetFor(long version)
{
    Ruleset ruleset;
    ruleset.fileAccess = LANDLOCK_ACCESS_FS_EXECUTE | accessWriting;
    if (version >= 2)
        ruleset.fileAccess |= accessRefer;
    if (version >= 3)
        ruleset.fileAccess |= accessTruncate;
    if (version >= 4)
        ruleset.netAccess = netBindTcp | netConnectTcp;
    if (version >= 5)
        ruleset.fileAccess |= accessDeviceIoctl;
    if (version >= 6)
        ruleset.scopes = scopeAbstractSocket | scopeSignal;
    return ruleset;
}

// Older kernels refuse a structure that is longer than the one they know.
std::size_t rulesetSize(long version)
{
    if (version >= 6)
        return 24;
    return version >= 4 ? 16 : 8;
}

bool allow(const Descriptor &rules, const std::string &path, std::uint64_t access)
{
    const Descriptor file(open(path.c_str(), O_PATH | O_CLOEXEC));
    const landlock_path_beneath_attr attribute{access, file.number()};
    return file.isValid() &&
           syscall(SYS_landlock_add_rule, rules.number(), LANDLOCK_RULE_PATH_BENEATH, &attribute, 0) == 0;
}

// The rules' descriptor, which closes on exec, or -1.
int makeRules(const std::string &program, const std::string &interpreter)
{
    const auto version = landlockVersion();
    if (version < 1)
        return -1;
    const auto ruleset = rulesetFor(version);
    Descriptor rules(syscall(SYS_landlock_create_ruleset, &ruleset, rulesetSize(version), 0));
    const bool isComplete = rules.isValid() && allow(rules, program, LANDLOCK_ACCESS_FS_EXECUTE) &&
                            (interpreter.empty() || allow(rules, interpreter, LANDLOCK_ACCESS_FS_EXECUTE)) &&
                            allow(rules, "/dev/null", LANDLOCK_ACCESS_FS_WRITE_FILE);
    return isComplete ? rules.release() : -1;
}

template <typename Value>
Value readAt(std::ifstream &file, std::streamoff offset)
{
    Value value{};
    file.seekg(offset);
    file.read(reinterpret_cast<char *>(&value), sizeof value);
    if (!file)
        throw std::runtime_error("not a complete ELF file");
    return value;
}

std::string textAt(std::ifstream &file, const ElfW(Phdr) & header)
{
    std::string text(header.p_filesz < PATH_MAX ? header.p_filesz : 0, '\0');
    file.seekg(static_cast<std::streamoff>(header.p_offset));
    file.read(text.data(), static_cast<std::streamsize>(text.size()));
    if (!file || text.empty())
        throw std::runtime_error("no readable interpreter in the ELF file");
    return text.c_str();  // NOLINT(readability-redundant-string-cstr): cuts the text at its end mark
}

}  // namespace

std::string elfInterpreter(const std::string &program)
{
    constexpr unsigned char ownClass = sizeof(void *) == 8 ? ELFCLASS64 : ELFCLASS32;
    std::ifstream file(program, std::ios::binary);
    const auto header = readAt<ElfW(Ehdr)>(file, 0);
    if (std::memcmp(&header.e_ident, ELFMAG, SELFMAG) != 0 || header.e_ident[EI_CLASS] != ownClass)
        throw std::runtime_error("not an ELF file of this machine");
    for (int index = 0; index < header.e_phnum; ++index) {
        const auto offset = static_cast<std::streamoff>(header.e_phoff) + std::streamoff(index) * header.e_phentsize;
        const auto segment = readAt<ElfW(Phdr)>(file, offset);
        if (segment.p_type == PT_INTERP)
            return textAt(file, segment);
    }
    return {};
}

ProgramConfinement::~ProgramConfinement()
{
    forget();
}

void ProgramConfinement::forget()
{
    if (m_rules >= 0)
        close(m_rules);
    m_rules = -1;
}

ProgramConfinement::Identity ProgramConfinement::identityOf(const std::string &path)
{
    struct stat status = {};
    if (path.empty() || stat(path.c_str(), &status) != 0)
        return {};
    return {status.st_dev, status.st_ino};
}

ProgramConfinement::Subject ProgramConfinement::subjectOf(const std::string &program)
{
    const auto interpreter = elfInterpreter(program);
    return {program, interpreter, identityOf(program), identityOf(interpreter)};
}

bool ProgramConfinement::isCurrent(const std::string &program) const
{
    return m_subject && m_subject->program == program && m_subject->programIdentity == identityOf(program) &&
           m_subject->interpreterIdentity == identityOf(m_subject->interpreter);
}

bool ProgramConfinement::prepare(const std::string &program)
{
    if (isCurrent(program))
        return isPrepared();
    forget();
    try {
        m_subject = subjectOf(program);
        m_rules = makeRules(program, m_subject->interpreter);
    } catch (const std::runtime_error &) {
        m_subject = Subject{program, {}, identityOf(program), {}};
    }
    return isPrepared();
}

bool ProgramConfinement::enforce() const
{
    return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 && syscall(SYS_landlock_restrict_self, m_rules, 0) == 0;
}

}  // namespace velquarin
