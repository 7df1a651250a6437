package vlxslt;

import java.util.ArrayList;
import java.util.List;
import javax.xml.transform.Source;
import javax.xml.transform.TransformerException;
import javax.xml.transform.URIResolver;
import javax.xml.transform.sax.SAXSource;
import vlxslt.Documents.Purpose;

/** What one transformation of Saxon reads by itself: from trees that are kept, and to be kept for others. */
final class SaxonDocuments implements URIResolver {
  /** A document that was read, and what its file was like before. */
  private record Reading(KeptTrees.Key key, FilesRead files, FileStamp before) {}

  private final SaxonTrees trees;
  private final Object controller;
  private final Object stylesheet;
  private final Job job;
  private final List<Reading> readings = new ArrayList<>();

  /** `stylesheet` stands for the compiled form, which is all that trees depend on. */
  SaxonDocuments(SaxonTrees trees, Object controller, Object stylesheet, Job job) {
    this.trees = trees;
    this.controller = controller;
    this.stylesheet = stylesheet;
    this.job = job;
  }

  @Override
  public Source resolve(String href, String base) throws TransformerException {
    FilesRead files = new FilesRead(job.filesRead());
    SAXSource source;
    try {
      source = job.documents().admittedSource(href, base, files, Purpose.DATA);
    } catch (AddressGate.ReadFailure e) {
      throw new TransformerException(e.getMessage(), e);
    }
    String address = source.getInputSource().getSystemId();
    if (!trees.areAskedFor())
      return source;
    KeptTrees.Key key = new KeptTrees.Key(stylesheet, address, job.start().includes());
    KeptTrees.Entry kept = job.documents().findTree(key, job.filesRead());
    if (kept != null)
      return open(kept.tree);
    readings.add(new Reading(key, files, FileStamp.of(address)));
    return source;
  }

  private Source open(Object kept) throws TransformerException {
    try {
      return trees.open(kept, Reflection.call(controller, "getSpaceStrippingRule"));
    } catch (Exception e) {
      throw new TransformerException(e);
    }
  }

  /** After the transformation. Two documents of one address, or what became of none, are not kept. */
  void keep() throws Exception {
    if (readings.isEmpty())
      return;
    List<Object> built = trees.treesOf(controller);
    for (Reading reading : readings) {
      List<Object> found = new ArrayList<>();
      for (Object tree : built)
        if (reading.key.address().equals(Reflection.find(SaxonTrees.rootOf(tree), "getSystemId")))
          found.add(tree);
      boolean isOnly = readings.stream().filter(other -> other.key.equals(reading.key)).count() == 1;
      Object kept = isOnly && found.size() == 1 ? trees.keep(found.get(0)) : null;
      if (kept != null)
        job.documents().keepTree(
            reading.key, kept, reading.files, reading.before, trees.bytesOf(kept));
    }
  }
}
