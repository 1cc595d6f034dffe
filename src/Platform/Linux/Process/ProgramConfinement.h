// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <sys/types.h>
#include <utility>

namespace velquarin {

//! Rules for child processes: they may execute one program and its ELF interpreter, and write nothing but /dev/null; as
//! far as the kernel knows how, they also open no TCP connection and reach no process outside.
//! Source: landlock(7), elf(5); docs/decisions/0005-reading-strangers-repositories.md
class ProgramConfinement
{
public:
    ProgramConfinement() = default;
    ~ProgramConfinement();
    ProgramConfinement(const ProgramConfinement &) = delete;
    ProgramConfinement &operator=(const ProgramConfinement &) = delete;

    //! Gets the rules for @p program ready. The kernel knows files by their identity, not by their name, so that an
    //! upgrade of the program makes rules anew: call it before each start.
    //! Errors: false where the kernel has no Landlock, or where @p program is not an ELF file (a script needs its shell).
    bool prepare(const std::string &program);

    //! Whether there are rules for enforce().
    [[nodiscard]] bool isPrepared() const { return m_rules >= 0; }

    //! Confines the calling thread and all it starts from now on, for good. Only system calls, so that it may run between
    //! fork and exec. Returns whether it is confined.
    [[nodiscard]] bool enforce() const;

private:
    //! What tells a file from another one under the same name.
    using Identity = std::pair<dev_t, ino_t>;

    struct Subject
    {
        std::string program;
        std::string interpreter;  // empty for a program that needs none
        Identity programIdentity;
        Identity interpreterIdentity;
        friend bool operator==(const Subject &, const Subject &) = default;
    };

    [[nodiscard]] static Identity identityOf(const std::string &path);
    [[nodiscard]] static Subject subjectOf(const std::string &program);
    [[nodiscard]] bool isCurrent(const std::string &program) const;
    void forget();

    std::optional<Subject> m_subject;  // that of the last call of prepare(), whether or not it has rules
    int m_rules = -1;
};

//! The interpreter that an ELF program names in its header, "/lib64/ld-linux-x86-64.so.2" for instance; empty for a
//! program that needs none.
//! Errors: std::runtime_error for a file that cannot be read or is not ELF of this machine.
[[nodiscard]] std::string elfInterpreter(const std::string &program);

}  // namespace velquarin
