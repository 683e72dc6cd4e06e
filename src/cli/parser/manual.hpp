#pragma once

namespace CLI {
class App;
}

namespace twk::cli {

class Output;

/// `twk __manual`, from which the manual pages are made: a JSON object for each command, and below it one for
/// each of its options and arguments, in the order of help. Returns the exit code.
///
///     {"command":"user import","help":"Create a user for each line …","commands":""}
///     {"command":"user import","option":"--first","value":"N","help":"Column of the first name","heading":"Options"}
///     {"format":"%first%","meaning":"The first name","example":"%first%","result":"John"}
///     {"variable":"%UserName%","meaning":"The account name","where":"Paths …"}
///     {"words":"site list","example":"twk site list"}
int print_manual(Output& output, const CLI::App& line);

}  // namespace twk::cli
