// The usual way from Node: run the client, have xml2js make objects of its report.
//
//     node xml2js.js KIND SVN ARGUMENT...
//
// Prints how many records it made, and the seconds it took without the interpreter's own start.

const { execFile } = require("node:child_process");
const { performance } = require("node:perf_hooks");
const { parseString } = require("xml2js");

const change = (element) =>
    element && {
        revision: element.$.revision,
        author: element.author && element.author[0],
        date: element.date && element.date[0],
    };

const makers = {
    status: (tree) =>
        tree.status.target[0].entry.map((entry) => {
            const state = entry["wc-status"][0];
            return { path: entry.$.path, ...state.$, ...change(state.commit && state.commit[0]) };
        }),
    log: (tree) =>
        tree.log.logentry.map((entry) => ({
            ...change(entry),
            message: entry.msg && entry.msg[0],
            paths: (entry.paths[0].path || []).map((path) => ({ path: path._, ...path.$ })),
        })),
    blame: (tree) =>
        tree.blame.target[0].entry.map((entry) => ({
            line: entry.$["line-number"],
            ...change(entry.commit && entry.commit[0]),
        })),
};

const [kind, svn, ...words] = process.argv.slice(2);
const begin = performance.now();
execFile(svn, words, { maxBuffer: 2 ** 30 }, (failure, report) => {
    if (failure) throw failure;
    parseString(report, (fault, tree) => {
        if (fault) throw fault;
        const records = makers[kind](tree);
        console.log(records.length, (performance.now() - begin) / 1000);
    });
});
