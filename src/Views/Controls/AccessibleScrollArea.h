// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

namespace velquarin {

//! Keeps screen readers from ending the program. The toolkit looks for a scroll area's children in a list that is
//! shorter while a scroll bar is hidden, and does not compare the number asked for with its length: who counted before
//! and asks afterwards makes it read beyond the end. From now on each QScrollArea has all its parts as children, hidden
//! ones as well, and answers with nothing for any other number. Cheap to call again; to be called once the application
//! object is there, since the factory that was installed last is asked first.
void readScrollAreasWhole();

}  // namespace velquarin
