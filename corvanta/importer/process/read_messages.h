#pragma once

#include <cstdint>

/// What a host and the program that reads model files for it say to each other. The program is
/// started with the version and with the memory that it may take.
namespace corvanta::importer {

inline constexpr char kReaderVersion[] = "3";

/// To the program, with shared memory: the file to read; without one, the formats are written there
/// that can be read.
struct NReadRequest {
  char path[4096];  // ends with a zero
};

enum NReadState : std::uint32_t {
  kReadReady,     // for the request
  kReadOpen,      // `text` is a path: a file to be opened for the program, which waits for it
  kReadDone,      // the scene is in the shared memory, which the program doesn't use any more
  kReadTooLarge,  // for the program's memory
  kReadFailed,    // `text` is the reason
};

/// From the program.
struct NReadAnswer {
  NReadState state;
  std::uint32_t length;  // of the text
  std::uint64_t size;    // of the scene, bytes
  char text[4096];
};

/// To the program that asked for a file, with a descriptor if it is open.
struct NOpenAnswer {
  std::uint32_t isOpen;
};

}  // namespace corvanta::importer
