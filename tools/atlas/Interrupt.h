// Ends a run in order when a signal asks for its end, so that nothing half written stays behind.
#pragma once

/// What is thrown where the work stops.
struct Interrupted {
    int signal = 0;
};

/// From now on SIGINT, SIGTERM and SIGHUP are only noted, unless they were ignored before, and a
/// closed pipe is an error of the writer.
void NoteInterrupts();

/// Throws Interrupted once a signal has come. Any thread may call.
void CheckInterrupted();

/// Ends the program by the signal, as if it had never been noted.
[[noreturn]] void EndBy(const Interrupted& interrupted);
