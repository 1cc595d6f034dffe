// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

// The libraries are what matters: the program that links them does nothing.
int main()
{
    return 0;
}
