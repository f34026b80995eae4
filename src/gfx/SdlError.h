// The one form in which failures of SDL and its companion libraries are reported.
#pragma once

/// Prints "<operation> error: <SDL's error text>" as a line on standard output. Call it at once
/// after the failing call, on the same thread: SDL keeps one text per thread.
void PrintSdlError(const char* operation);
