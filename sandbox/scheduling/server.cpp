// The sandbox scheduling server: writes one line for each call that it gets.
//
// Appends the lines to the file in $QMX_MESSAGE_BOARD, else writes them to standard error: the call's name, then its
// arguments, separated by " | ". A line break inside a text is shown as " / ", so a call stays one line.
#include "binding/server.h"

#include <fstream>
#include <iostream>

#include "scheduling/message_board.h"

namespace {

using orvan::Arguments;
using orvan::Failure;
using orvan::Result;

std::string OneLine(const std::string& text) {
  std::string line;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n') continue;
    if (text[i] == '\r' || text[i] == '\n')
      line += " / ";
    else
      line += text[i];
  }
  return line;
}

void Show(const std::string& call, Arguments arguments) {
  std::string line = call;
  for (std::size_t i = 0; i < arguments.size(); ++i) line += " | " + OneLine(arguments[i].Shown());
  line += '\n';

  const std::filesystem::path board = orvan::MessageBoard();
  if (board.empty()) {
    std::cerr << line << std::flush;
    return;
  }
  std::ofstream file(board, std::ios::app | std::ios::binary);
  file << line << std::flush;
  if (!file)
    throw Failure(orvan::kFileUnusable, "QmxSandboxServer",
                  "The message board \"" + board.string() +
                      "\" cannot be written. Check the path in QMX_MESSAGE_BOARD, the folder's rights and the disk.");
}

class MessageHandler : public orvan::Component<MessageHandler> {
 public:
  static constexpr char kName[] = "QMXServer20.clsMessHandler";
  static const auto& Methods() {
    static constexpr Method methods[] = {{"writeToMessageBox", 2, &MessageHandler::WriteToMessageBox},
                                         {"WriteToAlertBox", 2, &MessageHandler::WriteToAlertBox}};
    return methods;
  }

 private:
  void WriteToMessageBox(Arguments timeAndText, Result) { Show("message", timeAndText); }
  void WriteToAlertBox(Arguments timeAndText, Result) { Show("alert", timeAndText); }
};

class ClientRequests : public orvan::Component<ClientRequests> {
 public:
  static constexpr char kName[] = "QMXServer20.ClientRequests";
  static const auto& Methods() {
    static constexpr Method methods[] = {{"UpdateStatusByTalbe", 3, &ClientRequests::UpdateStatus}};
    return methods;
  }

 private:
  void UpdateStatus(Arguments requestTableAndStatus, Result) { Show("status", requestTableAndStatus); }
};

}  // namespace

extern "C" QMX_EXPORT const qmx_component_server* QMX_COMPONENT_SERVER_ENTRY(const qmx_component_host* host,
                                                                             qmx_error* error) {
  return orvan::Serve(host, error, "QMX sandbox scheduling server",
                      {orvan::Serving<MessageHandler>(), orvan::Serving<ClientRequests>()});
}
