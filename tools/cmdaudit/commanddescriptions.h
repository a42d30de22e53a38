#ifndef COMMANDDESCRIPTIONS_H
#define COMMANDDESCRIPTIONS_H

// What the sources cannot say about the commands they build: where each
// argument's value comes from and what it went through before it reached
// the builder. Kept by hand beside the scanner; the audit's test fails
// while a command of the plug-in has no entry here, or an entry names a
// command that is gone.
class CommandDescriptions
{
public:
    static constexpr int MaxArguments = 5;

    struct Command
    {
        const char *file;       // relative to plugin/
        const char *function;   // as the scanner names it
        const char *pattern;    // as C source writes it, without quotes
        // Per argument, in order: the value's source, and the checks it
        // passed before the builder's own (null: none).
        const char *inputs[MaxArguments];
        const char *checks[MaxArguments];
        const char *note;       // when and why it runs
    };

    struct Program
    {
        const char *file;
        const char *function;
        const char *call;       // the starting call the scanner reports
        // The program texts started there: text constants of the file,
        // separated by blanks; null when the text arrives as a parameter.
        const char *constants;
        const char *input;
        const char *check;
    };

    static const Command *commands();
    static int commandCount();
    static const Program *programs();
    static int programCount();
};

#endif // COMMANDDESCRIPTIONS_H
