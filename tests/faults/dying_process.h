#pragma once

#include <string>

namespace faults {

/// What a process does to a file when it dies.
enum class Transfer { kOpen, kSave };

inline constexpr unsigned kDied = 77;  // exit code

/// The content that a dying process saves: as many bytes as that, all values.
std::string SavedContent();

/// Runs this program once more; there a document opens or saves a file and the process is ended
/// when so many bytes have been transferred. Returns the exit code.
unsigned LetProcessDie(Transfer transfer, int bytes_transferred, const std::wstring& path);

/// What the other process does, if its command line asks for it: it does not return from that.
void DieIfAskedTo(const wchar_t* command_line);

}  // namespace faults
