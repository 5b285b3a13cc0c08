#pragma once

#include <string>
#include <vector>

namespace torvan::slicer {

// Builds the XML of small diagrams. Ports are called BLOCK.in1, BLOCK.out2 and so on.

inline std::string inlineTexts(const std::vector<std::string>& values) {
  std::string text = "<TextString as=\"exprs\">";
  for (std::size_t i = 0; i < values.size(); ++i) {
    text += "<data line=\"" + std::to_string(i) + "\" column=\"0\" value=\"" + values[i] + "\"/>";
  }
  return text + "</TextString>";
}

inline std::string block(const std::string& tag, const std::string& id, const std::string& kind,
                         const std::string& content = "") {
  const std::string kindAttribute = kind.empty() ? "" : " interfaceFunctionName=\"" + kind + "\"";
  return "<" + tag + " id=\"" + id + "\"" + kindAttribute + " simulationFunctionType=\"DEFAULT\">" +
         content + "</" + tag + ">";
}

inline std::string port(const std::string& tag, const std::string& id, int number,
                        const std::string& attributes = "") {
  return "<" + tag + " id=\"" + id + "\" parent=\"" + id.substr(0, id.find('.')) +
         "\" ordering=\"" + std::to_string(number) + "\" " + attributes + "/>";
}

inline std::string input(const std::string& id, int number = 1) {
  return port("ExplicitInputPort", id, number);
}

inline std::string output(const std::string& id, int number = 1) {
  return port("ExplicitOutputPort", id, number);
}

inline std::string link(const std::string& source, const std::string& target,
                        const std::string& tag = "ExplicitLink") {
  return "<" + tag + " id=\"" + source + "-" + target + "\" source=\"" + source + "\" target=\"" +
         target + "\"/>";
}

// A block with one data output.
inline std::string source(const std::string& id, const std::string& kind = "CONST_m") {
  return block("BasicBlock", id, kind) + output(id + ".out1");
}

// One with a data input.
inline std::string sink(const std::string& id, const std::string& kind = "CSCOPE") {
  return block("BasicBlock", id, kind) + input(id + ".in1");
}

// The inside of a port of a super-block, with one port of its own.
inline std::string numbered(const std::string& tag, const std::string& id, int number) {
  const std::string ports = tag == "ExplicitInBlock" ? output(id + ".out1") : input(id + ".in1");
  return block(tag, id, "", inlineTexts({std::to_string(number)})) + ports;
}

// One that sends, receives or limits what goes by a tag.
inline std::string tagged(const std::string& id, const std::string& kind, const std::string& tag,
                          const std::string& visibility = "") {
  return block("BasicBlock", id, kind, inlineTexts({tag, visibility}));
}

inline std::string graph(const std::string& cells) {
  return "<mxGraphModel as=\"model\"><root>" + cells + "</root></mxGraphModel>";
}

inline std::string inner(const std::string& cells) {
  return "<SuperBlockDiagram as=\"child\">" + graph(cells) + "</SuperBlockDiagram>";
}

inline std::string sheet(const std::string& cells, const std::string& title = "") {
  return "<Sheet title=\"" + title + "\">" + graph(cells) + "</Sheet>";
}

}  // namespace torvan::slicer
