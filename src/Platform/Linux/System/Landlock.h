// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace velquarin {

//! Confines the calling thread, and every process and thread that it starts from now on, to executing @p program and
//! its ELF interpreter, and to writing nothing but /dev/null; as far as the kernel knows how, also to opening no TCP
//! connection and reaching no process outside. For good: there is no way back.
//! Errors: false where the kernel has no Landlock, or where @p program is not an ELF file (a script needs its shell).
//! Source: landlock(7), elf(5)
bool confineThreadToProgram(const std::string &program);

//! The interpreter that an ELF program names in its header, "/lib64/ld-linux-x86-64.so.2" for instance; empty for a
//! program that needs none. Throws std::runtime_error for a file that cannot be read or is not ELF of this machine.
[[nodiscard]] std::string elfInterpreter(const std::string &program);

}  // namespace velquarin
