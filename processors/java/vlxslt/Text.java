package vlxslt;

import java.util.Arrays;
import java.util.regex.Matcher;
import java.util.regex.Pattern;

/** What the layer itself says to people. The texts are the client's, which hands them over when it starts the layer. */
enum Text {
  CLASS_PATH_ENTRY_UNUSABLE,
  NO_PROCESSOR_SELECTED,
  PROCESSOR_NOT_LOADED,
  CLASS_MISSING,
  NO_TRANSFORMER_FACTORY,
  NEEDED_CLASS_MISSING,
  OUT_OF_MEMORY,
  RECURSION_TOO_DEEP,
  FILE_NOT_READ,
  FILE_MISSING,
  NO_PERMISSION,
  STYLESHEET_NOT_COMPILED,
  NO_STYLESHEET,
  OUTPUT_IS_STYLESHEET,
  OUTPUT_IS_FOLDER,
  OUTPUT_READ_ONLY,
  OUTPUT_FOLDER_MISSING,
  OUTPUT_FOLDER_READ_ONLY,
  OUTPUT_NOT_WRITTEN,
  TOO_MANY_LINKS,
  OUTPUT_TAKEN,
  OUTPUT_NOT_A_FILE,
  TWO_RESULTS_ONE_FILE,
  ADDRESS_NOT_FETCHED,
  FILE_IS_FOLDER,
  FILE_NOT_REGULAR,
  STYLESHEET_NAME_EMPTY,
  ADDRESS_UNUSABLE,
  ADDRESS_NOT_READ,
  HOST_UNKNOWN,
  NOT_THERE,
  ATTRIBUTE_REFUSED,
  NO_NAMED_START,
  ADDRESS_KIND_REFUSED,
  TOO_MANY_REDIRECTS,
  FRAGMENT_MISSING,
  WRITE_REFUSED,
  EXTENSION_REFUSED,
  EXTENSIONS_OFF,
  OTHER_NAMES_KEEP_OLD,
  PERMISSIONS_NOT_KEPT;

  private static final Pattern PLACEHOLDER = Pattern.compile("%([0-9])");
  private static String[] table = {};

  /** The texts in the order of their names. */
  static void setTable(String[] texts) {
    if (texts.length != values().length)
      throw new IllegalArgumentException(texts.length + " texts for " + values().length + " names");
    table = texts;
  }

  /** The text with %0, %1, … replaced; the name and the values as long as there are no texts. */
  String with(Object... values) {
    if (table.length == 0)
      return name() + Arrays.toString(values);
    return PLACEHOLDER.matcher(table[ordinal()])
        .replaceAll(found -> Matcher.quoteReplacement(String.valueOf(values[Integer.parseInt(found.group(1))])));
  }
}
