// What ESLint asks of the page's scripts and style, and of what tests and measures them: scripts/soak page.
import css from "@eslint/css";
import js from "@eslint/js";
import globals from "globals";

export default [
  {
    files: ["**/*.js", "**/*.mjs"],
    ...js.configs.recommended,
    languageOptions: {ecmaVersion: 2022, globals: globals.browser},
    linterOptions: {reportUnusedDisableDirectives: "error"},
    rules: {
      ...js.configs.recommended.rules,
      "array-callback-return": "error",
      "consistent-return": "error",
      "default-param-last": "error",
      eqeqeq: "error",
      "no-eval": "error",
      "no-implicit-coercion": "error",
      "no-implied-eval": "error",
      "no-param-reassign": "error",
      "no-shadow": "error",
      "no-throw-literal": "error",
      "no-unused-expressions": "error",
      "no-use-before-define": ["error", "nofunc"],
      "no-var": "error",
      "object-shorthand": "error",
      "prefer-const": "error",
    },
  },
  {
    files: ["tests/**", "bench/**"],
    languageOptions: {globals: {...globals.node, ...globals.browser}},
  },
  {
    files: ["**/*.css"],
    plugins: {css},
    language: "css/css",
    rules: {
      ...css.configs.recommended.rules,
      "css/no-important": "off", // what is hidden stays hidden, and paper has no buttons
      "css/no-invalid-properties": ["error", {allowUnknownVariables: true}], // some are set by the scripts
      "css/use-baseline": "off", // what a browser does not know yet only looks plainer
    },
  },
];
