#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace corvanta::app {

/// Something that moves a document in the course of time, in one direction.
class NPlayer {
 public:
  /// A number that changes in the course of time.
  struct Channel {
    std::string item;  // its name, UTF-8
    std::string attribute;
  };

  NPlayer() = default;
  NPlayer(NPlayer const&) = delete;
  NPlayer& operator=(NPlayer const&) = delete;
  virtual ~NPlayer();

  /// What it moves, the channels of an item side by side.
  std::vector<Channel> const& GetChannels() const { return m_channels; }
  /// The values of the channels now, one for each.
  virtual std::vector<double> Sample() const = 0;

  /// A title for what is played.
  virtual std::string GetTitle() const = 0;
  /// How long one run takes.
  /// Units: seconds.
  virtual double GetLength() const = 0;
  /// The moment of what is played that stands now.
  /// Units: seconds.
  virtual double GetMoment() const = 0;

  /// Moves the document to the moment where the direction begins.
  virtual void Begin() = 0;
  /// Moves it on. An end that is reached but for rounding is reached; where it repeats, that is the
  /// begin of the next run.
  /// Units: seconds, 0 or more.
  virtual void Advance(double seconds) = 0;

 protected:
  /// Whether a step ends where `left` is left, but for what rounding makes of sums of steps.
  static bool IsReached(double step, double left);

  std::vector<Channel> m_channels;
};

}  // namespace corvanta::app
