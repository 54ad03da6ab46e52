// The rule in a thread of its own: answers what RuleThread asks, one question after the other.

import { Rule } from "./rule.js";

let rule = null;
let lastAnswer = Promise.resolve();

const answers = {
    load: async (bytes, columns, run) => {
        rule = await Rule.load(bytes);
        rule.setFigures(columns, run);
        return rule.hasDistances;
    },
    decide: (settings) => rule.decide(settings),
    explain: (row, settings) => rule.explain(row, settings),
    fit: (rows, settings) => rule.fit(rows, settings),
};

async function answer([question, ...values]) {
    try {
        postMessage({ value: await answers[question](...values) });
    } catch (error) {
        postMessage({ fault: String(error) });
    }
}

onmessage = ({ data }) => {
    lastAnswer = lastAnswer.then(() => answer(data));
};
