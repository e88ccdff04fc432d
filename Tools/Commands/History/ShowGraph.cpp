#include "Tools/Commands/History/ShowGraph.h"

#include "Foundation/PercentCoding.h"
#include "Tools/Commands/History/GraphViews.h"
#include "Tools/Commands/History/HistoryFormat.h"
#include "Tools/Commands/Places/ItemPlace.h"
#include "Tools/Console/JsonOutput.h"
#include "Tools/Terminal/Columns.h"
#include "Tools/Terminal/Pager.h"
#include "Tools/Terminal/Times.h"

#include <iostream>

namespace quen::tools {

namespace {

/// A graph is of a whole project: what is asked for must not be less.
int checkPlace(const Session& session, const ProjectLayout& layout, const std::string& location) {
    const auto item = location.empty() ? std::nullopt : infoOf(location);
    if (!item) {
        return ExitSuccess;
    }
    const std::string url = item->url.str();
    const std::string& root = layout.rootURL();
    const std::string path =
        url.starts_with(root) ? percentDecoded(url.substr(root.size())) : std::string();
    const std::string branch = layout.branchOf(path);
    if (branch.empty() || branch == path) {
        return ExitSuccess;
    }
    return session
        .fail("\"" + printable(location) + "\" is only a part of " +
              printable(layout.nameOf(branch)) +
              ", and --graph shows the branches of a whole project. Leave PATH out, or leave "
              "--graph out to see the history of this item.")
        .status;
}

int showForPeople(Session& session, const SourceTree& source, const ProjectLayout& layout,
                  const GraphOptions& options) {
    const Palette palette = session.options().palette();
    const GraphFormat format{options.isOneLine, options.isQuiet,
                             outputIsTerminal() ? outputColumns() : 0};
    GraphText graph(layout, palette, marks(), format, currentDate());
    PagedOutput output;
    return readGraph(session, source, layout, options.query,
                     [&](const GraphNode& node, bool isShown, const BranchGraph::NextOn& nextOn) {
                         GraphNode shown = node;
                         if (!options.wantsPaths) {
                             shown.entry.paths.clear();
                         }
                         return output.write(graph.add(shown, isShown, nextOn));
                     });
}

int showForScripts(Session& session, const SourceTree& source, const ProjectLayout& layout,
                   const GraphOptions& options) {
    GraphQuery query = options.query;
    query.needsParents = true;
    bool isFirst = true;
    const int status =
        readGraph(session, source, layout, query,
                  [&](const GraphNode& node, bool isShown, const BranchGraph::NextOn& /*nextOn*/) {
                      if (!isShown) {
                          return true;
                      }
                      HistoryEntry entry = node.entry;
                      if (!options.wantsPaths) {
                          entry.paths.clear();
                      }
                      Dictionary record = options.isInLines
                                              ? shortRecord(entry, options.wantsPaths)
                                              : contractRecord(entry, options.wantsPaths);
                      addGraphMembers(record, node, layout);
                      std::cout << (options.isInLines ? ""
                                    : isFirst         ? "["
                                                      : ",")
                                << jsonText(record) << (options.isInLines ? "\n" : "");
                      isFirst = false;
                      return std::cout.flush().good();
                  });
    if (!options.isInLines) {
        std::cout << (!isFirst ? "]\n" : status == ExitSuccess ? "[]\n" : "null\n");
    }
    return status;
}

} // namespace

int showGraph(Session& session, const GraphOptions& options) {
    const auto source = findSourceWithLayout(
        session, options.location.empty() ? "." : options.location, options.layout);
    if (!source) {
        return source.status();
    }
    const ProjectLayout layout(*source);
    if (const int status = checkPlace(session, layout, options.location); status != ExitSuccess) {
        return status;
    }
    const bool isForScripts = session.options().json || options.isInLines;
    return isForScripts ? showForScripts(session, *source, layout, options)
                        : showForPeople(session, *source, layout, options);
}

} // namespace quen::tools
