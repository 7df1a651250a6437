import net.sf.saxon.Configuration;
import net.sf.saxon.lib.Initializer;

public class Setup implements Initializer {
  @Override
  public void initialize(Configuration configuration) {
    configuration.setConfigurationProperty("http://saxon.sf.net/feature/strip-whitespace", "all");
  }
}
