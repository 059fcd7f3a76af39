#pragma once

namespace Tav {

// Both the kind of message box asked for and the answer it gives. The kinds
// are bit values so that a caller may keep passing plain numbers.
enum class DialogResult : int {
    None = 0, // closed without an answer
    Ok = 1,
    Cancel = 2,
    Yes = 4,
    No = 8,
    Information = 16, // information, one OK button
    Warning = 32,     // warning, one OK button
    Error = 64,       // error, one OK button
    Question = 128,   // question, Yes and No
};

} // namespace Tav
