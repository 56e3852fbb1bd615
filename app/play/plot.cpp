#include "app/play/plot.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>

#include "app/output/text.h"
#include "app/play/panels.h"

namespace corvanta::app {

namespace {

// Pixels.
constexpr double kWidth = 960.0, kLeft = 100.0, kRight = 110.0;
constexpr double kHead = 52.0, kFoot = 34.0;
constexpr double kPanelHead = 26.0, kPanelHeight = 130.0, kPanelFoot = 44.0;
constexpr double kPanel = kPanelHead + kPanelHeight + kPanelFoot;

// Told apart also by those who don't see all colours.
constexpr char const* kColors[] = {"#d55e00", "#009e73", "#0072b2", "#cc79a7", "#e69f00"};

struct Pen {
  char const* color;
  double width;
};

std::string Pixel(double value) {
  std::array<char, 32> buffer{};
  auto const end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                 std::chars_format::fixed, 1);
  return {buffer.data(), end.ptr};
}

std::string Escaped(std::string const& text) {
  std::string escaped;
  for (char const c : OneLine(text)) {
    switch (c) {
      case '&':
        escaped += "&amp;";
        break;
      case '<':
        escaped += "&lt;";
        break;
      case '>':
        escaped += "&gt;";
        break;
      case '"':
        escaped += "&quot;";
        break;
      default:
        escaped += c;
    }
  }
  return escaped;
}

char const* GetUnit(std::string const& kind) {
  if (kind == "rotation") return "degrees";
  if (kind == "scale") return "factor";
  return kind == "up" ? "direction" : "scene units";
}

std::size_t GetColor(std::string const& label, std::size_t index) {
  if (label.size() == 1 && label[0] >= 'x' && label[0] <= 'z') {
    return static_cast<std::size_t>(label[0] - 'x');
  }
  return index % std::size(kColors);
}

// A straight scale from values to pixels, with ticks at round numbers.
class Axis {
 public:
  Axis(NRange range, double from, double to, int tickCount) : m_from(from), m_to(to) {
    if (range.IsEmpty()) range = {0.0, 1.0};
    if (range.IsFlat()) {
      double const middle = range.least;
      double const half = middle == 0.0 ? 1.0 : std::abs(middle) / 2;
      range = {middle - half, middle + half};
    }
    m_range = range;
    double const rough = range.GetSize() / tickCount;
    double const power = std::pow(10.0, std::floor(std::log10(rough)));
    double const digit = rough / power;
    // The nearest, so that there are two ticks at least.
    m_step = power * (digit < 1.5 ? 1.0 : digit < 3.5 ? 2.0 : digit < 7.5 ? 5.0 : 10.0);
  }

  double GetPixel(double value) const {
    return m_from + (value - m_range.least) / m_range.GetSize() * (m_to - m_from);
  }

  std::vector<double> GetTicks() const {
    constexpr int kMostSteps = 20;
    std::vector<double> ticks;
    double const first = std::ceil(m_range.least / m_step - 1e-9);
    for (int i = 0; i != kMostSteps; ++i) {
      double const tick = (first + i) * m_step;
      if (tick > m_range.largest + 1e-9 * m_range.GetSize()) break;
      ticks.push_back(tick);
    }
    return ticks;
  }

  std::string GetText(double tick) const {
    std::array<char, 64> buffer{};
    double const largest = std::max(std::abs(m_range.least), std::abs(m_range.largest));
    int const decimals = static_cast<int>(std::max(0.0, -std::floor(std::log10(m_step) + 1e-9)));
    // Around zero a sum of steps leaves a rest.
    if (std::abs(tick) < m_step * 1e-6) tick = 0.0;
    if (largest >= 1e7 || decimals > 6) {
      std::snprintf(buffer.data(), buffer.size(), "%.4g", tick);
    } else {
      std::snprintf(buffer.data(), buffer.size(), "%.*f", decimals, tick);
    }
    return buffer.data();
  }

 private:
  NRange m_range;
  double m_from, m_to, m_step;
};

class Plot {
 public:
  Plot(std::ostream& out, NRecording const& recording)
      : m_out(out), m_recording(recording), m_time(GetTimes(), kLeft, kWidth - kRight, 8) {}

  void Write(std::string const& title, std::vector<NPanel> panels) {
    std::size_t const allCount = panels.size();
    if (!std::all_of(panels.begin(), panels.end(), [](NPanel const& p) { return p.IsFlat(); })) {
      std::erase_if(panels, [](NPanel const& panel) { return panel.IsFlat(); });
    }
    double const height = kHead + kPanel * static_cast<double>(panels.size()) + kFoot;
    m_out << R"(<svg xmlns="http://www.w3.org/2000/svg" width=")" << Pixel(kWidth) << "\" height=\""
          << Pixel(height) << "\" viewBox=\"0 0 " << Pixel(kWidth) << ' ' << Pixel(height)
          << R"(" font-family="sans-serif" font-size="12">)"
          << "\n<title>" << Escaped(title) << "</title>\n"
          << R"(<rect width="100%" height="100%" fill="#ffffff"/>)" << '\n';
    Text(kLeft, 30.0, Escaped(title), R"( font-size="18" fill="#222222")");
    double top = kHead;
    for (NPanel const& panel : panels) {
      WritePanel(panel, top + kPanelHead);
      top += kPanel;
    }
    if (panels.size() != allCount) {
      Text(kLeft, top + 14.0,
           Plural(allCount - panels.size(), "panel in which nothing changes was",
                  "panels in which nothing changes were") +
               " left out",
           R"( fill="#777777")");
    } else if (panels.empty()) {
      Text(kLeft, top + 14.0, "nothing is animated", R"( fill="#777777")");
    }
    m_out << "</svg>\n";
  }

 private:
  NRange GetTimes() const {
    NRange range;
    for (double const time : m_recording.GetTimes()) range.Add(time);
    return range;
  }

  void Text(double x, double y, std::string const& text, char const* style) {
    m_out << "<text x=\"" << Pixel(x) << "\" y=\"" << Pixel(y) << '"' << style << '>' << text
          << "</text>\n";
  }

  void Line(double x1, double y1, double x2, double y2, char const* color) {
    m_out << "<line x1=\"" << Pixel(x1) << "\" y1=\"" << Pixel(y1) << "\" x2=\"" << Pixel(x2)
          << "\" y2=\"" << Pixel(y2) << "\" stroke=\"" << color << "\"/>\n";
  }

  void WritePanel(NPanel const& panel, double top) {
    double const bottom = top + kPanelHeight;
    double const right = kWidth - kRight;
    NRange range = panel.GetRange();
    if (!range.IsFlat()) {
      double const margin = range.GetSize() * 0.05;
      range = {range.least - margin, range.largest + margin};
    }
    Axis const values(range, bottom, top, 4);
    Text(kLeft, top - 8.0, Escaped(panel.item + "  " + panel.kind),
         R"( font-size="14" fill="#222222")");
    for (double const tick : values.GetTicks()) {
      double const y = values.GetPixel(tick);
      Line(kLeft, y, right, y, "#e4e4e4");
      Text(kLeft - 8.0, y + 4.0, values.GetText(tick), R"( text-anchor="end" fill="#444444")");
    }
    for (double const tick : m_time.GetTicks()) {
      double const x = m_time.GetPixel(tick);
      Line(x, top, x, bottom, "#f0f0f0");
      Line(x, bottom, x, bottom + 4.0, "#444444");
      Text(x, bottom + 17.0, m_time.GetText(tick), R"( text-anchor="middle" fill="#444444")");
    }
    Line(kLeft, top, kLeft, bottom, "#444444");
    Line(kLeft, bottom, right, bottom, "#444444");
    Text((kLeft + right) / 2, bottom + 32.0, "time in seconds",
         R"( text-anchor="middle" fill="#777777")");
    std::string const turn = " text-anchor=\"middle\" fill=\"#777777\" transform=\"rotate(-90 18 " +
                             Pixel((top + bottom) / 2) + ")\"";
    Text(18.0, (top + bottom) / 2, GetUnit(panel.kind), turn.c_str());
    for (std::size_t i = 0; i != panel.curves.size(); ++i) {
      NPanel::Curve const& curve = panel.curves[i];
      // Where curves run together, the wider one below is still seen.
      Pen const pen{kColors[GetColor(curve.label, i)], i == 0 ? 3.2 : i == 1 ? 2.2 : 1.2};
      WriteCurve(curve, values, pen);
      double const y = top + 10.0 + 18.0 * static_cast<double>(i);
      m_out << "<line x1=\"" << Pixel(right + 14.0) << "\" y1=\"" << Pixel(y) << "\" x2=\""
            << Pixel(right + 38.0) << "\" y2=\"" << Pixel(y) << "\" stroke=\"" << pen.color
            << "\" stroke-width=\"" << Pixel(pen.width) << "\"/>\n";
      Text(right + 44.0, y + 4.0, Escaped(curve.label), R"( fill="#222222")");
    }
  }

  // A line for each run of values that can be drawn.
  void WriteCurve(NPanel::Curve const& curve, Axis const& axis, Pen const& pen) {
    auto const& times = m_recording.GetTimes();
    auto const& values = m_recording.GetValues(curve.channel);
    for (std::size_t i = 0; i != values.size();) {
      if (!NRange::Holds(values[i])) {
        ++i;
        continue;
      }
      std::vector<std::array<std::string, 2>> points;
      for (; i != values.size() && NRange::Holds(values[i]); ++i) {
        points.push_back({Pixel(m_time.GetPixel(times[i])), Pixel(axis.GetPixel(values[i]))});
      }
      WriteRun(points, pen);
    }
  }

  void WriteRun(std::vector<std::array<std::string, 2>> const& points, Pen const& pen) {
    if (points.size() == 1) {
      m_out << "<circle cx=\"" << points[0][0] << "\" cy=\"" << points[0][1] << "\" r=\"2\" fill=\""
            << pen.color << "\"/>\n";
      return;
    }
    m_out << R"(<polyline fill="none" stroke-linejoin="round" stroke-width=")" << Pixel(pen.width)
          << "\" stroke=\"" << pen.color << "\" points=\"";
    for (std::size_t i = 0; i != points.size(); ++i) {
      bool const isInside = i != 0 && i + 1 != points.size();
      // Nothing is seen of the points inside a level stretch.
      if (isInside && points[i - 1][1] == points[i][1] && points[i][1] == points[i + 1][1])
        continue;
      m_out << (i == 0 ? "" : " ") << points[i][0] << ',' << points[i][1];
    }
    m_out << "\"/>\n";
  }

  std::ostream& m_out;
  NRecording const& m_recording;
  Axis const m_time;
};

}  // namespace

void WritePlot(std::ostream& out, std::string const& title,
               std::vector<NPlayer::Channel> const& channels, NRecording const& recording) {
  Plot(out, recording).Write(title, ArrangePanels(channels, recording));
}

}  // namespace corvanta::app
