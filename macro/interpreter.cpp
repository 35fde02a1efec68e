#include "macro/interpreter.h"

#include "core/go_on.h"
#include "core/rich_text_surface.h"

#include <cmath>
#include <exception>
#include <limits>

namespace tornelia {

QString trimBlanks(const QString& s)
{
    qsizetype a = 0;
    qsizetype b = s.size();
    while (a < b && s.at(a) == u' ')
        ++a;
    while (b > a && s.at(b - 1) == u' ')
        --b;
    return s.mid(a, b - a);
}

namespace {

// The substring from a 1-based start; a negative length or a start before
// the text is a failed step, as the language has always treated them.
QString mid(const QString& s, qsizetype start, qsizetype length)
{
    if (start < 1 || length < 0)
        throw MacroError(MacroError::InvalidCall);
    if (start > s.size())
        return {};
    return s.mid(start - 1, length);
}

// The 1-based position of ch at or after start, 0 when there is none.
qsizetype inStr(qsizetype start, const QString& s, QChar ch)
{
    if (start > s.size())
        return 0;
    return s.indexOf(ch, start - 1) + 1;
}

// Runs one step; a failure skips it and the caller goes on with the next.
// The macro's own errors and those of the document are runtime errors;
// running out of memory is not a failed step and ends the run.
template <typename F>
bool step(F&& f)
{
    return goOnAt("Macro", f);
}

bool isOperator(QChar ch)
{
    switch (ch.unicode()) {
    case '+': case '-': case '/': case '\\': case '^': case '*': case '&':
        return true;
    default:
        return false;
    }
}

}  // namespace

c::c(MacroHost host) : host_(host) {}

c::~c() = default;

bool c::IsFun(const QString& name)
{
    return commandNames().contains(name);
}

const QStringList& c::commandNames()
{
    static const QStringList words = {
        QStringLiteral("msgbox"), QStringLiteral("seltxt"), QStringLiteral("clear"),  QStringLiteral("type"),
        QStringLiteral("sst"),    QStringLiteral("sel"),    QStringLiteral("new"),    QStringLiteral("open"),
        QStringLiteral("save"),   QStringLiteral("delete"), QStringLiteral("prop"),   QStringLiteral("pag"),
        QStringLiteral("ant"),    QStringLiteral("stampa"), QStringLiteral("undo"),   QStringLiteral("redo"),
        QStringLiteral("cut"),    QStringLiteral("copy"),   QStringLiteral("paste"),  QStringLiteral("font"),
        QStringLiteral("dime"),   QStringLiteral("gras"),   QStringLiteral("cors"),   QStringLiteral("sott"),
        QStringLiteral("barr"),   QStringLiteral("par"),    QStringLiteral("imm"),    QStringLiteral("txt"),
        QStringLiteral("lin"),    QStringLiteral("mai"),    QStringLiteral("conta"),  QStringLiteral("vai"),
        QStringLiteral("mail"),   QStringLiteral("ins"),    QStringLiteral("tast"),   QStringLiteral("acapo"),
        QStringLiteral("asc"),    QStringLiteral("chr"),
    };
    return words;
}

void c::tick()
{
    if (stepLimit > 0 && ++steps_ > stepLimit) {
        stoppedAtLimit_ = true;
        throw MacroRunAborted{};
    }
}

void c::ScriptExecute()
{
    steps_ = 0;
    stoppedAtLimit_ = false;
    try {
        const QStringList lines = ScriptText.split(QStringLiteral("\r\n"));
        // The line counter is a 16-bit integer: a longer macro overflows it
        // before its first line.
        if (lines.size() > 32767)
            throw MacroRunAborted{};
        for (qsizetype i = 0; i < lines.size(); ++i)
            runLine(lines.at(i), std::int16_t(i));
    } catch (const MacroRunAborted&) {
    } catch (const std::runtime_error& e) {
        qCWarning(lcSkipped, "Macro: esecuzione interrotta: %s", e.what());
    }
    // Nothing survives a run.
    while (!varNames_.isEmpty()) {
        varNames_.removeLast();
        varValues_.pop_back();
    }
}

void c::runLine(QString line, std::int16_t number)
{
    tick();
    line = trimBlanks(line);
    if (line.isEmpty())
        return;
    if (LineStart)
        LineStart(line, number);

    // A comment runs from the first "#" on, quoted or not; the blanks before
    // it stay on the line.
    const qsizetype hash = line.indexOf(u'#');
    if (hash >= 0)
        line.truncate(hash);
    if (line.isEmpty())
        return;

    const qsizetype space = line.indexOf(u' ');
    if (space >= 0 && line.left(space).toLower() == QLatin1String("dim")) {
        const QString rest = trimBlanks(line.mid(space + 1));
        if (rest.isEmpty())
            return;
        for (const QString& piece : rest.split(u',')) {
            varNames_.append(trimBlanks(piece));
            varValues_.push_back(QString());
        }
        return;
    }

    qsizetype eq = 0;  // 1-based, 0 for none
    for (qsizetype i = 0; i < line.size(); ++i) {
        const QChar ch = line.at(i);
        if (ch == u'(') {
            CallFun(line);
            return;
        }
        if (ch == u'=') {
            eq = i + 1;
            break;
        }
    }
    if (eq == 0)
        return;

    const QString name = trimBlanks(line.left(eq - 1));
    const QString right = line.mid(eq);
    const qsizetype paren = inStr(1, line, u'(');
    MacroValue value;
    if (paren == 0) {
        value = EvalParen(right);
    } else {
        // The stretch counted from the "=" runs past the "(", so the
        // candidate never names a command and every such line is a call.
        const QString candidate = trimBlanks(mid(line, eq + 1, paren - 1));
        value = IsFun(candidate) ? EvalParen(right) : CallFun(right);
    }
    SetVar(name, value);
}

void c::SetVar(const QString& name, const MacroValue& value)
{
    for (qsizetype k = varNames_.size() - 1; k >= 0; --k) {
        if (varNames_.at(k) == name) {
            varNames_.removeAt(k);
            varValues_.erase(varValues_.begin() + k);
            varNames_.append(name);
            varValues_.push_back(value);
            return;
        }
    }
}

MacroValue c::GetVar(const QString& name) const
{
    const qsizetype k = varNames_.indexOf(name);
    return k < 0 ? MacroValue{} : varValues_.at(std::size_t(k));
}

void c::apply(const QString& op, MacroValue& accumulator, const MacroValue& operand)
{
    if (op == QLatin1String("&")) {
        accumulator = textOf(accumulator) + textOf(operand);
        return;
    }
    const double a = numberOf(accumulator);
    const double b = numberOf(operand);
    if (op == QLatin1String("\\")) {
        const std::int32_t ia = roundToInt32(a);
        const std::int32_t ib = roundToInt32(b);
        if (ib == 0)
            throw MacroError(MacroError::DivisionByZero);
        if (ia == std::numeric_limits<std::int32_t>::min() && ib == -1)
            throw MacroError(MacroError::Overflow);
        accumulator = std::int32_t(ia / ib);
        return;
    }
    double r = 0;
    switch (op.at(0).unicode()) {
    case '+': r = a + b; break;
    case '-': r = a - b; break;
    case '*': r = a * b; break;
    case '/':
        if (b == 0)
            throw MacroError(a == 0 ? MacroError::Overflow : MacroError::DivisionByZero);
        r = a / b;
        break;
    case '^':
        if (a == 0 && b < 0)
            throw MacroError(MacroError::DivisionByZero);
        r = std::pow(a, b);
        break;
    default:
        throw MacroError(MacroError::InvalidCall);
    }
    if (std::isnan(r))
        throw MacroError(MacroError::InvalidCall);
    if (!std::isfinite(r))
        throw MacroError(MacroError::Overflow);
    accumulator = r;
}

MacroValue c::EvalExpr(const QString& expression)
{
    const QString& e = expression;
    const qsizetype n = e.size();
    MacroValue acc;
    QString op;
    qsizetype tokenStart = 0;
    MacroValue operand;

    auto take = [&](bool clearOperator) {
        if (op.isEmpty()) {
            acc = operand;
        } else {
            step([&] { apply(op, acc, operand); });
            if (clearOperator)
                op.clear();
        }
    };

    for (qsizetype i = 1; i <= n; ++i) {
        tick();
        const QChar ch = e.at(i - 1);
        if (ch == u'"') {
            const qsizetype q = inStr(i + 1, e, u'"');
            step([&] { operand = mid(e, i + 1, q - i - 1); });
            // Without a partner the scan goes back to the start.
            i = q;
            take(true);
        } else if (ch == u' ') {
            continue;
        } else if (isOperator(ch)) {
            if (tokenStart == 0) {
                op = ch;
            } else {
                // The name is expected to stand one blank before its
                // operator, so its last character is dropped.
                step([&] { operand = GetVar(mid(e, tokenStart, i - (tokenStart + 1))); });
                take(false);
                tokenStart = 0;
                op = ch;
            }
        } else {
            if (tokenStart == 0)
                tokenStart = i;
            if (i == n) {
                operand = GetVar(e.mid(tokenStart - 1));
                take(true);
            }
        }
    }
    return acc;
}

MacroValue c::EvalParen(QString expression)
{
    for (;;) {
        tick();
        const qsizetype n = expression.size();
        qsizetype open = 0;
        qsizetype close = 0;
        for (qsizetype i = 1; i <= n; ++i) {
            tick();
            const QChar ch = expression.at(i - 1);
            if (ch == u'"') {
                i = inStr(i + 1, expression, u'"');
            } else if (ch == u'(') {
                open = i;
            } else if (ch == u')') {
                close = i;
                break;
            }
        }
        if (open == 0 || close == 0)
            return EvalExpr(expression);
        const MacroValue inner = EvalExpr(mid(expression, open + 1, close - open - 1));
        expression = expression.left(open - 1) + QStringLiteral(" \"") + textOf(inner) + QStringLiteral("\" ") +
                     expression.mid(close);
    }
}

bool c::EvalCompare(const QString& expression)
{
    const QString& e = expression;
    const qsizetype n = e.size();
    qsizetype leftEnd = n;  // characters of the left side
    int depth = 0;
    for (qsizetype i = 1; i <= n; ++i) {
        tick();
        const QChar ch = e.at(i - 1);
        if (ch == u'(') {
            ++depth;
        } else if (ch == u')') {
            if (--depth == 0) {
                leftEnd = i;
                break;
            }
        } else if (ch == u'"') {
            const qsizetype q = inStr(i + 1, e, u'"');
            if (q == 0)
                break;  // an open quote runs to the end
            i = q;
            if (depth == 0) {
                leftEnd = q;
                break;
            }
        } else if (depth == 0 && (ch == u'<' || ch == u'>' || ch == u'=')) {
            leftEnd = i - 1;
            break;
        }
    }
    const QString left = e.left(leftEnd);
    const QString rest = trimBlanks(e.mid(leftEnd));
    if (rest.isEmpty())
        return false;
    const qsizetype opLength =
        rest.size() > 1 && (rest.at(1) == u'<' || rest.at(1) == u'>' || rest.at(1) == u'=') ? 2 : 1;
    const QString op = rest.left(opLength);
    const QString a = textOf(EvalParen(left));
    const QString b = textOf(EvalParen(rest.mid(opLength)));
    if (op == QLatin1String("<"))
        return numberOfText(a) < numberOfText(b);
    if (op == QLatin1String(">"))
        return numberOfText(a) > numberOfText(b);
    if (op == QLatin1String("<>"))
        return numberOfText(a) != numberOfText(b);
    if (op == QLatin1String(">="))
        return numberOfText(a) >= numberOfText(b);
    if (op == QLatin1String("<="))
        return numberOfText(a) <= numberOfText(b);
    if (op == QLatin1String("="))
        return a == b;
    if (op == QLatin1String("=="))
        return a.toLower() == b.toLower();
    return false;
}

MacroValue c::CallFun(const QString& callText)
{
    const qsizetype paren = inStr(1, callText, u'(');
    const QString name = trimBlanks(callText.left(paren > 0 ? paren - 1 : 0));
    QString argumentText;
    // The last character goes whatever it is: that is what drops the ")".
    step([&] { argumentText = trimBlanks(mid(callText, paren + 1, callText.size() - paren - 1)); });
    QString argument = argumentText;
    step([&] {
        const MacroValue v = GetVar(argumentText);
        const QString text = textOf(v);
        argument = !isEmpty(v) && !text.isEmpty() ? text : ArgValue(argumentText);
    });
    MacroValue result;
    step([&] { result = RunFun(name, argument, argumentText); });
    return result;
}

QString c::ArgValue(const QString& argumentText)
{
    const QString& t = argumentText;
    if (t.isEmpty())
        return {};
    if (isNumericText(t))
        return trimBlanks(t);
    if (t.at(0) != u'"')
        return textOf(GetVar(t));
    return mid(t, 2, t.size() - 2);
}

RichTextSurface& c::hiddenSurface()
{
    if (host_.hidden)
        return *host_.hidden;
    if (!ownHidden_)
        ownHidden_ = std::make_unique<RichTextSurface>();
    return *ownHidden_;
}

}  // namespace tornelia
