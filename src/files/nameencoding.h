// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#ifndef BREVIO_NAMEENCODING_H
#define BREVIO_NAMEENCODING_H

// How the programs turn the system's file names, arguments and console
// text into QString and back.
namespace nameEncoding {

// POSIX names are bytes: the locale's codec becomes one that gives every
// byte back (FileNameCodec). Windows names are UTF-16 text already, and Qt
// takes them as such. Call once, early in main(), before arguments are read.
void keepNamesExact();

} // namespace nameEncoding

#endif
